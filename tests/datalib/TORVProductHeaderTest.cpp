#include "datalib/TORVProductHeader.h"

#include "radarsim/TORVProductWriter.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

TORVProductHeader headerOf(const TORVProductFields& fields)
{
    const QByteArray bytes = TORVProductWriter::header(fields, 0);
    TORVProductHeader header;
    std::copy(bytes.begin(), bytes.end(), header.data());
    return header;
}

struct Refusal
{
    const char* title;
    void (*spoil)(TORVProductFields& fields);
    const char* reason; ///< empty: this one is fine
};

void PrintTo(const Refusal& refusal, std::ostream* out)
{
    *out << refusal.title;
}

class TORVProductHeaderRefusal : public testing::TestWithParam<Refusal>
{
};

} // namespace

TEST_P(TORVProductHeaderRefusal, IsGivenInWords)
{
    TORVProductFields fields;
    GetParam().spoil(fields);
    EXPECT_EQ(headerOf(fields).whyRefused(), QLatin1String(GetParam().reason));
}

using F = TORVProductFields;

INSTANTIATE_TEST_SUITE_P(
    Cases, TORVProductHeaderRefusal,
    testing::Values(
        Refusal{"as it is", [](F&) {}, ""}, Refusal{"Mercator", [](F& f) { f.projectionType = 1; }, ""},
        Refusal{"projection 2", [](F& f) { f.projectionType = 2; }, "projection type is unknown"},
        Refusal{"latitude 90", [](F& f) { f.siteLatitude = 0x40000000U; }, ""},
        Refusal{"latitude -90", [](F& f) { f.siteLatitude = 0xC0000000U; }, ""},
        Refusal{"latitude beyond 90", [](F& f) { f.siteLatitude = 0x40000100U; }, "site latitude is impossible"},
        Refusal{"latitude -180", [](F& f) { f.siteLatitude = 0x80000000U; }, "site latitude is impossible"},
        Refusal{"month 0", [](F& f) { f.dataMonth = 0; }, "data time is impossible"},
        Refusal{"30 February", [](F& f) { f.dataMonth = 2, f.dataDay = 30; }, "data time is impossible"},
        Refusal{"last second", [](F& f) { f.dataSeconds = 86399; }, ""},
        Refusal{"24 hours", [](F& f) { f.dataSeconds = 86400; }, "data time is impossible"},
        Refusal{"no points", [](F& f) { f.yPoints = 0; }, "grid has no points"},
        Refusal{"negative points", [](F& f) { f.zPoints = -1; }, "grid has no points"},
        Refusal{"scale 0", [](F& f) { f.zScale = 0; }, "grid scale is not above 0"},
        Refusal{"negative scale", [](F& f) { f.xScale = -100000; }, "grid scale is not above 0"},
        Refusal{"flattening 0.000001", [](F& f) { f.earthInvFlattening = 1; }, "earth model is impossible"},
        Refusal{"flattening 99.9", [](F& f) { f.earthInvFlattening = 99999999; }, "earth model is impossible"},
        Refusal{"flattening 100", [](F& f) { f.earthInvFlattening = 100000000; }, ""},
        Refusal{"radius 6.2e6", [](F& f) { f.earthRadius = 620000000; }, ""},
        Refusal{"radius 6.5e6", [](F& f) { f.earthRadius = 650000000; }, ""},
        Refusal{"radius in metres", [](F& f) { f.earthRadius = 6371000; }, "earth model is impossible"},
        Refusal{"radius too large", [](F& f) { f.earthRadius = 650000001; }, "earth model is impossible"},
        Refusal{"blank site", [](F& f) { f.siteName = "   "; }, "site name is blank"},
        Refusal{"NUL site", [](F& f) { f.siteName = QByteArray("\0x", 2); }, "site name is blank"},
        Refusal{"prf 0 of Z", [](F& f) { f.prf = 0; }, ""},
        Refusal{"prf 0 of V", [](F& f) { f.dataType = 3, f.prf = 0; }, "Nyquist velocity is not above 0"},
        Refusal{"wavelength 0 of W", [](F& f) { f.dataType = 4, f.wavelength = 0; }, "Nyquist velocity is not above 0"},
        Refusal{"negative prf of V", [](F& f) { f.dataType = 3, f.prf = -1000; }, "Nyquist velocity is not above 0"},
        Refusal{"prf 0 of two-byte V", [](F& f) { f.dataType = 10, f.prf = 0; }, ""}));
