#include "iconmaker/TORVStyleSheet.h"

#include "gui/TORVPalette.h"

#include <QFile>
#include <QRegularExpression>

TORVStyleSheet::TORVStyleSheet(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        _errors << fileName + QLatin1String(": ") + file.errorString();
        return;
    }
    _source = QString::fromUtf8(file.readAll());
    if (QString::fromLatin1(_source.toLatin1()) != _source) {
        _errors << fileName + QLatin1String(": characters beyond Latin-1");
    }
}

QString TORVStyleSheet::expanded(const TORVPalette& palette, bool night)
{
    static const QRegularExpression token(QStringLiteral("@([a-z_]+)"));
    QString text;
    int end = 0;
    for (auto matches = token.globalMatch(_source); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const QString name = match.captured(1);
        const QColor color = palette.color(name, night);
        const QString mode = night ? QStringLiteral("night") : QStringLiteral("day");
        const bool isMode = name == QLatin1String("mode");
        if (!isMode && !color.isValid()) {
            _errors << QLatin1String("no colour called ") + match.captured();
        }
        text += _source.mid(end, match.capturedStart() - end);
        text += isMode ? mode : color.isValid() ? color.name() : match.captured();
        end = match.capturedEnd();
    }
    return text + _source.mid(end);
}
