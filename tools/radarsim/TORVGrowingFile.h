#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

/**
 * Writes a file the way a slow network copy does: in pieces, in place, under its final name, so that whoever watches
 * meets it empty, with part of a header, and with part of its data.
 *
 * Thread: any thread.
 */
class TORVGrowingFile final
{
public:
    TORVGrowingFile() = delete;

    /// Called between two pieces.
    using Pause = std::function<void()>;

    static constexpr int Pieces = 6;

    /// Where each piece ends; the last end is `size`. The first pieces end within the header.
    static qint64 pieceEnd(int piece, qint64 size);

    /// @return an empty text, or in words why the file could not be written; then it is removed.
    static QString write(const QString& path, const QByteArray& bytes, const Pause& pause);
};
