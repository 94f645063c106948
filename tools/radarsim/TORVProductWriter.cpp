#include "radarsim/TORVProductWriter.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>

namespace
{

constexpr int SiteNameOffset = 422;
constexpr int SiteNameSize = 16;

using Header = std::array<char, TORVProductWriter::HeaderSize>;

template <typename T>
void put(Header& header, std::size_t offset, T value)
{
    qToLittleEndian(value, &header[offset]);
}

void putSiteName(Header& header, const QByteArray& name)
{
    const QByteArray padded = name.leftJustified(SiteNameSize, ' ', true);
    std::copy(padded.begin(), padded.end(), header.begin() + SiteNameOffset);
}

int32_t totalBytes(const TORVProductFields& fields, qint64 dataBytes)
{
    if (fields.totalBytes != TORVProductFields::FollowsFromData) {
        return fields.totalBytes;
    }
    const qint64 total = TORVProductWriter::HeaderSize + dataBytes;
    return static_cast<int32_t>(std::min<qint64>(total, std::numeric_limits<int32_t>::max()));
}

QString fill(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    const bool isGood = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
                        TORVProductWriter::writeAll(file, bytes.constData(), bytes.size());
    return isGood ? QString() : file.errorString();
}

} // namespace

QByteArray TORVProductWriter::header(const TORVProductFields& fields, qint64 dataBytes)
{
    Header header{};
    put(header, 0, fields.structureId);
    put(header, 4, totalBytes(fields, dataBytes));
    put(header, 12, fields.configStructureId);
    put(header, 24, fields.productType);
    put(header, 44, fields.dataSeconds);
    put(header, 50, fields.dataYear);
    put(header, 52, fields.dataMonth);
    put(header, 54, fields.dataDay);
    put(header, 100, fields.xScale);
    put(header, 104, fields.yScale);
    put(header, 108, fields.zScale);
    put(header, 112, fields.xPoints);
    put(header, 116, fields.yPoints);
    put(header, 120, fields.zPoints);
    put(header, 124, fields.xRadar);
    put(header, 128, fields.yRadar);
    put(header, 132, fields.zRadar);
    put(header, 142, fields.dataType);
    put(header, 158, fields.projectionType);
    putSiteName(header, fields.siteName);
    put(header, 440, fields.siteLatitude);
    put(header, 444, fields.siteLongitude);
    put(header, 448, fields.groundElevation);
    put(header, 450, fields.radarHeight);
    put(header, 452, fields.prf);
    put(header, 462, fields.prfRatioCode);
    put(header, 480, fields.wavelength);
    put(header, 504, fields.nyquistHalvingCode);
    put(header, 552, fields.earthRadius);
    put(header, 556, fields.earthInvFlattening);
    return {header.data(), HeaderSize};
}

QByteArray TORVProductWriter::file(const TORVProductFields& fields, const QByteArray& data)
{
    return header(fields, data.size()) + data;
}

bool TORVProductWriter::writeAll(QFile& file, const char* bytes, qint64 size)
{
    // A disk that fills up takes part of a block without a word; only the next write tells why.
    while (size > 0) {
        const qint64 written = file.write(bytes, size);
        if (written <= 0) {
            return false;
        }
        bytes += written;
        size -= written;
    }
    return true;
}

QString TORVProductWriter::write(const QString& path, const QByteArray& bytes)
{
    const QFileInfo target(path);
    // Hidden, so that nobody who watches the directory takes it for a product.
    const QString part = QStringLiteral("%1/.%2.part").arg(target.absolutePath(), target.fileName());
    const QString error = fill(part, bytes);
    if (!error.isEmpty()) {
        QFile::remove(part);
        return QStringLiteral("%1: %2").arg(target.absoluteFilePath(), error);
    }
    if (std::rename(QFile::encodeName(part).constData(), QFile::encodeName(target.absoluteFilePath()).constData()) !=
        0) {
        const QString why = qt_error_string();
        QFile::remove(part);
        return QStringLiteral("%1: %2").arg(target.absoluteFilePath(), why);
    }
    return {};
}
