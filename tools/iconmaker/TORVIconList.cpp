#include "iconmaker/TORVIconList.h"

#include <QFile>
#include <QRegularExpression>

namespace
{

TORVIconList::Kind kindOf(const QString& word)
{
    if (word == QLatin1String("checkable")) {
        return TORVIconList::CHECKABLE;
    }
    return word == QLatin1String("on_accent") ? TORVIconList::ON_ACCENT : TORVIconList::PLAIN;
}

} // namespace

TORVIconList::TORVIconList(const QString& fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        _errors << fileName + QLatin1String(": ") + file.errorString();
        return;
    }
    const QStringList lines = QString::fromLatin1(file.readAll()).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        readLine(line.simplified());
    }
}

void TORVIconList::readLine(const QString& line)
{
    static const QRegularExpression row(QStringLiteral("^(\\w+) (\\w+) (\\d{1,3}) (-|checkable|on_accent)$"));
    if (line.isEmpty() || line.startsWith(QLatin1Char('#'))) {
        return;
    }
    const QRegularExpressionMatch match = row.match(line);
    if (!match.hasMatch()) {
        _errors << line;
        return;
    }
    _icons.push_back({match.captured(1), match.captured(2), match.captured(3).toInt(), kindOf(match.captured(4))});
}
