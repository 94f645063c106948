#pragma once

#include <QColor>
#include <QHash>
#include <QPalette>
#include <QString>
#include <QStringList>

/**
 * The colours that windows are painted in, by the names that the style sheets use for them ("text", "panel", "accent"),
 * each with one value for the day and one for the night. They come from one table, which is also what the sheets and
 * icons are made of when the program is built.
 *
 * The table is text: "NAME #DAY #NIGHT" on a line; lines that begin with '#' are comments.
 *
 * Thread: any thread; the first call of `instance` belongs to the main thread.
 */
class TORVPalette final
{
public:
    /// The table that the program carries.
    static const TORVPalette& instance();

    /// Lines that are not of the table's form are left out and named in `getErrors`.
    explicit TORVPalette(const QString& fileName);

    QStringList getErrors() const { return _errors; }
    QStringList getNames() const { return _names; } ///< in the order of the table

    /// Not valid for a name that the table lacks.
    QColor color(const QString& name, bool night) const;

    /// What widgets paint with where no style sheet tells.
    QPalette widgetPalette(bool night) const;

private:
    struct Pair
    {
        QColor day;
        QColor night;
    };

    void readLine(const QString& line);

    QHash<QString, Pair> _colors;
    QStringList _names;
    QStringList _errors;
};
