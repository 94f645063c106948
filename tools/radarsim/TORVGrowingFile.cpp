#include "radarsim/TORVGrowingFile.h"

#include "radarsim/TORVProductWriter.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace
{

constexpr qint64 PartOfHeader = 100;

} // namespace

qint64 TORVGrowingFile::pieceEnd(int piece, qint64 size)
{
    if (piece == 0) {
        return 0;
    }
    if (piece == 1) {
        return std::min(PartOfHeader, size);
    }
    return std::max(std::min(PartOfHeader, size), size * (piece - 1) / (Pieces - 2));
}

QString TORVGrowingFile::write(const QString& path, const QByteArray& bytes, const Pause& pause)
{
    QFile file(path);
    bool isGood = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    qint64 written = 0;
    for (int piece = 0; isGood && piece < Pieces; ++piece) {
        const qint64 end = pieceEnd(piece, bytes.size());
        isGood = TORVProductWriter::writeAll(file, bytes.constData() + written, end - written);
        written = end;
        if (isGood && piece + 1 < Pieces) {
            pause();
        }
    }
    if (isGood) {
        return {};
    }
    const QString why = file.errorString();
    file.close();
    QFile::remove(path);
    return QStringLiteral("%1: %2").arg(QFileInfo(path).absoluteFilePath(), why);
}
