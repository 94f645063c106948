#pragma once

#include <QString>
#include <QStringList>

/**
 * The tables of text that look and icons are made of: a row a line, comments behind '#' at the beginning of a line.
 *
 * Thread: any thread.
 */
class TORVTextTable final
{
public:
    TORVTextTable() = delete;

    /// The rows, without blanks at their ends and with single ones between words. A file that can't be read has none
    /// and is named in `errors`.
    static QStringList readLines(const QString& fileName, QStringList& errors);
};
