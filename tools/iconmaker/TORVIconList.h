#pragma once

#include <QString>
#include <QStringList>

#include <vector>

/**
 * Which icons there are, read from a text file: name, drawing, size in pixels at 100 % and kind on a line; lines that
 * begin with '#' are comments.
 *
 * Thread: any thread.
 */
class TORVIconList final
{
public:
    enum Kind
    {
        PLAIN,     ///< "-"
        CHECKABLE, ///< "checkable": has a selected form
        ON_ACCENT, ///< "on_accent": stands on the accent colour
    };

    struct Icon
    {
        QString name;
        QString drawing;
        int size = 0;
        Kind kind = PLAIN;
    };

    /// Lines that are not of the form are left out and named in `getErrors`.
    explicit TORVIconList(const QString& fileName);

    QStringList getErrors() const { return _errors; }
    const std::vector<Icon>& getIcons() const { return _icons; }

private:
    void readLine(const QString& line);

    std::vector<Icon> _icons;
    QStringList _errors;
};
