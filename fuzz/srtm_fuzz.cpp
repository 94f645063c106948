// A tile of SRTM of any name and content must be refused or become ground. The input is the file's name up to a line
// feed, then its first bytes; the file is filled up to one of the sizes that count, or left as it is.

#include "TerrainFuzz.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<int>(std::min<size_t>(size, 1 << 16)));
    const int nameEnd = input.indexOf('\n');
    if (nameEnd < 0) {
        return 0;
    }
    const QByteArray content = input.mid(nameEnd + 1);
    const int fullSize = input.size() % 16 == 0 ? content.size() : 2884802;
    TerrainFuzz::convert(TerrainFuzz::fileName(input.left(nameEnd), ".hgt"), content, fullSize);
    return 0;
}
