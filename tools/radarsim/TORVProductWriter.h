#pragma once

#include "radarsim/TORVProductFields.h"

#include <QString>

class QFile;

/**
 * Lays out product files: a header of 640 bytes, little-endian, and behind it the data block, x fastest, then y, then
 * z. It writes whatever it is given, wrong values included: the tests' bad files come from here too.
 *
 * Thread: any thread.
 */
class TORVProductWriter final
{
public:
    TORVProductWriter() = delete;

    static constexpr int HeaderSize = 640;

    /// The header alone; `dataBytes` decides `totalBytes` where that field follows from the data.
    static QByteArray header(const TORVProductFields& fields, qint64 dataBytes);

    /// Header and data block.
    static QByteArray file(const TORVProductFields& fields, const QByteArray& data);

    /**
     * Writes `bytes` beside `path` and renames: nobody ever sees half a file under the final name.
     * @return an empty text, or in words why the file could not be written; then nothing is left behind.
     */
    static QString write(const QString& path, const QByteArray& bytes);

    /// Writes `size` bytes to a file that is open without a buffer, so that a full disk is noticed here, with its
    /// reason.
    static bool writeAll(QFile& file, const char* bytes, qint64 size);
};
