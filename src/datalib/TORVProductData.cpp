#include "datalib/TORVProductData.h"

#include <QFile>

#include <cassert>
#include <limits>
#include <new>

namespace
{

// 0 for a grid that no file can hold.
qint64 gridItems(const TORVFile& file)
{
    const qint64 x = file.getXPoints();
    const qint64 y = file.getYPoints();
    const qint64 z = file.getZPoints();
    constexpr qint64 Largest = std::numeric_limits<int>::max();
    if (x < 1 || y < 1 || z < 1 || y > Largest / x || z > Largest / (x * y)) {
        return 0;
    }
    return x * y * z;
}

bool readExactly(QFile& file, char* to, qint64 size)
{
    qint64 got = 0;
    while (got < size) {
        const qint64 bytes = file.read(to + got, size - got);
        if (bytes <= 0) {
            return false;
        }
        got += bytes;
    }
    return true;
}

} // namespace

TORVProductData::TORVProductData(std::unique_ptr<uint16_t[]> bytes, qint64 itemCount, int itemSize)
    : _bytes(std::move(bytes)), _itemCount(itemCount), _itemSize(itemSize)
{
}

TORVProductData::CPtr TORVProductData::read(const TORVFile& file)
{
    assert(file.isValid());
    const qint64 count = gridItems(file);
    const qint64 size = count * file.getItemSize();
    if (count == 0 || size > file.getDataSize()) {
        return {};
    }
    QFile source(file.getPath());
    if (!source.open(QIODevice::ReadOnly | QIODevice::Unbuffered) ||
        source.bytesAvailable() != file.getTotalFileSize() || !source.seek(file.getHeaderSize())) {
        return {};
    }
    std::unique_ptr<uint16_t[]> bytes(new (std::nothrow) uint16_t[static_cast<size_t>((size + 1) / 2)]);
    if (!bytes || !readExactly(source, reinterpret_cast<char*>(bytes.get()), size)) {
        return {};
    }
    return CPtr(new TORVProductData(std::move(bytes), count, file.getItemSize()));
}

unsigned int TORVProductData::item(qint64 index) const
{
    assert(index >= 0 && index < _itemCount);
    return _itemSize == 1 ? reinterpret_cast<const uint8_t*>(_bytes.get())[index] : _bytes[static_cast<size_t>(index)];
}
