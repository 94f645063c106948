#include "gui/TORVPalette.h"

#include "gui/TORVTextTable.h"

#include <QRegularExpression>

namespace
{

struct Role
{
    QPalette::ColorRole role;
    const char* name;
};

const Role Roles[] = {
    {QPalette::Window, "panel"},        {QPalette::WindowText, "text"},
    {QPalette::Base, "field"},          {QPalette::AlternateBase, "panel"},
    {QPalette::Text, "text"},           {QPalette::PlaceholderText, "disabled"},
    {QPalette::Button, "raised"},       {QPalette::ButtonText, "text"},
    {QPalette::BrightText, "err_text"}, {QPalette::Light, "hover"},
    {QPalette::Midlight, "press"},      {QPalette::Mid, "line"},
    {QPalette::Dark, "control"},        {QPalette::Shadow, "control"},
    {QPalette::Highlight, "select"},    {QPalette::HighlightedText, "on_select"},
    {QPalette::Link, "accent"},         {QPalette::LinkVisited, "accent"},
    {QPalette::ToolTipBase, "tip"},     {QPalette::ToolTipText, "on_tip"},
};

const QPalette::ColorRole DisabledRoles[] = {QPalette::WindowText, QPalette::Text, QPalette::ButtonText};

} // namespace

const TORVPalette& TORVPalette::instance()
{
    static const TORVPalette palette(QStringLiteral(":/palette.txt"));
    return palette;
}

TORVPalette::TORVPalette(const QString& fileName)
{
    for (const QString& line : TORVTextTable::readLines(fileName, _errors)) {
        readLine(line);
    }
}

void TORVPalette::readLine(const QString& line)
{
    static const QRegularExpression row(QStringLiteral("^([a-z_]+) (#[0-9A-Fa-f]{6}) (#[0-9A-Fa-f]{6})$"));
    const QRegularExpressionMatch match = row.match(line);
    const QString name = match.captured(1);
    if (!match.hasMatch() || _colors.contains(name)) {
        _errors << line;
        return;
    }
    _names << name;
    _colors.insert(name, {QColor(match.captured(2)), QColor(match.captured(3))});
}

QColor TORVPalette::color(const QString& name, bool night) const
{
    const Pair pair = _colors.value(name);
    return night ? pair.night : pair.day;
}

QPalette TORVPalette::widgetPalette(bool night) const
{
    QPalette palette;
    for (const Role& row : Roles) {
        palette.setColor(row.role, color(QLatin1String(row.name), night));
    }
    for (const QPalette::ColorRole role : DisabledRoles) {
        palette.setColor(QPalette::Disabled, role, color(QStringLiteral("disabled"), night));
    }
    return palette;
}
