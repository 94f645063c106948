#pragma once

#include "datalib/TORVFile.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <memory>

/**
 * The data block of one product, read whole: one unsigned item of one or two bytes (little-endian, the byte order of
 * every machine this runs on) a grid point, x fastest, then y, then z. Raw value 0 means no data.
 *
 * Thread: `read` on any thread; the object is immutable and shared by all.
 */
class TORVProductData final
{
public:
    using CPtr = boost::shared_ptr<const TORVProductData>;

    /**
     * Reads the file behind a valid `file`. The file on the disk must have exactly the size that the header tells, and
     * the grid must fit into it: whatever the header claims, nothing beyond the block is ever touched.
     * @return null if it doesn't, or if the file has vanished, shrunk or changed its size since.
     */
    static CPtr read(const TORVFile& file);

    /// The first item; `itemCount() * itemSize()` bytes are there.
    const void* items() const { return _bytes.get(); }
    qint64 itemCount() const { return _itemCount; }
    int itemSize() const { return _itemSize; }

    /// The raw value of item `index`, 0 <= index < itemCount().
    unsigned int item(qint64 index) const;

private:
    TORVProductData(std::unique_ptr<uint16_t[]> bytes, qint64 itemCount, int itemSize);

    std::unique_ptr<uint16_t[]> _bytes; // aligned for either item size
    qint64 _itemCount;
    int _itemSize;
};
