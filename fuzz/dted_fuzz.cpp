// A file of DTED of any content must be refused or become ground. The input is the beginning of the file; the file is
// filled up to the size that counts, or left as it is.

#include "TerrainFuzz.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<int>(std::min<size_t>(size, 1 << 16)));
    const int fullSize = input.size() % 16 == 0 ? input.size() : 2902642 + input.size() % 2;
    TerrainFuzz::convert(TerrainFuzz::fileName("n46_e008", ".dt1"), input, fullSize);
    return 0;
}
