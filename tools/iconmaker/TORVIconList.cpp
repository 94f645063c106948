#include "iconmaker/TORVIconList.h"

#include "gui/TORVTextTable.h"

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
    for (const QString& line : TORVTextTable::readLines(fileName, _errors)) {
        readLine(line);
    }
}

void TORVIconList::readLine(const QString& line)
{
    static const QRegularExpression row(QStringLiteral("^(\\w+) (\\w+) (\\d{1,3}) (-|checkable|on_accent)$"));
    const QRegularExpressionMatch match = row.match(line);
    if (!match.hasMatch()) {
        _errors << line;
        return;
    }
    _icons.push_back({match.captured(1), match.captured(2), match.captured(3).toInt(), kindOf(match.captured(4))});
}
