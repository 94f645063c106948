#include "gui/TORVProductKey.h"

#include <QRegularExpression>

TORVProductKey TORVProductKey::fromText(const QString& text)
{
    static const QRegularExpression form(QStringLiteral("^(\\S*)\\s-\\s(\\S*)$"));
    const QRegularExpressionMatch match = form.match(text);
    return {match.captured(1), match.captured(2)};
}

QString TORVProductKey::text() const
{
    return name + QLatin1String(" - ") + configuration;
}
