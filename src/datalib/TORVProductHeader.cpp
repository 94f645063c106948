#include "datalib/TORVProductHeader.h"

#include "utils/TORVCoordinate.h"

#include <QDate>
#include <QStringList>

#include <algorithm>

namespace
{

constexpr int SiteNameOffset = 422;
constexpr int SiteNameSize = 16;
constexpr uint32_t SecondsPerDay = 86400;

// The Earth, with room for every model in use; a definition far from it makes PROJ fail.
constexpr uint32_t SmallestRadius_cm = 620000000;
constexpr uint32_t LargestRadius_cm = 650000000;
constexpr uint32_t SmallestInvFlattening_millionths = 100000000;

constexpr uint16_t OneByteVelocity = 3;
constexpr uint16_t OneByteWidth = 4;

bool isLatitudePossible(const TORVProductHeader& header)
{
    const double lat = TORVCoordinate(header.siteLatitude(), header.siteLongitude()).getLat();
    return lat >= -90.0 && lat <= 90.0;
}

bool isTimePossible(const TORVProductHeader& header)
{
    return QDate::isValid(header.dataYear(), header.dataMonth(), header.dataDay()) &&
           header.dataSeconds() < SecondsPerDay;
}

bool isEarthPossible(const TORVProductHeader& header)
{
    const uint32_t radius = header.earthRadius();
    const uint32_t flattening = header.earthInvFlattening();
    return (radius == 0 || (radius >= SmallestRadius_cm && radius <= LargestRadius_cm)) &&
           (flattening == 0 || flattening >= SmallestInvFlattening_millionths);
}

bool isNyquistPossible(const TORVProductHeader& header)
{
    const bool scalesWithNyquist = header.dataType() == OneByteVelocity || header.dataType() == OneByteWidth;
    return !scalesWithNyquist || static_cast<double>(header.wavelength()) * header.prf() > 0.0;
}

struct Question
{
    const char* complaint;
    bool (*isFine)(const TORVProductHeader&);
};

const Question Questions[] = {
    {"projection type is unknown", [](const TORVProductHeader& h) { return h.projectionType() <= 1; }},
    {"site latitude is impossible", isLatitudePossible},
    {"data time is impossible", isTimePossible},
    {"grid has no points",
     [](const TORVProductHeader& h) {
         return std::min({h.xPoints(), h.yPoints(), h.zPoints()}) >= 1;
     }},
    {"grid scale is not above 0",
     [](const TORVProductHeader& h) {
         return std::min({h.xScale(), h.yScale(), h.zScale()}) > 0;
     }},
    {"earth model is impossible", isEarthPossible},
    {"Nyquist velocity is not above 0", isNyquistPossible},
};

} // namespace

QString TORVProductHeader::siteName() const
{
    const char* const begin = _bytes.data() + SiteNameOffset;
    const char* const end = std::find(begin, begin + SiteNameSize, '\0');
    return QString::fromLatin1(begin, static_cast<int>(end - begin));
}

// A blank is what simplifying a text takes away; this runs for every file of a directory, so it makes no text.
bool TORVProductHeader::isSiteNamed() const
{
    const char* const begin = _bytes.data() + SiteNameOffset;
    const char* const end = std::find(begin, begin + SiteNameSize, '\0');
    return std::any_of(begin, end, [](char letter) { return !QChar(QLatin1Char(letter)).isSpace(); });
}

QString TORVProductHeader::whyRefused() const
{
    if (!isSiteNamed()) {
        return QStringLiteral("site name is blank");
    }
    for (const Question& question : Questions) {
        if (!question.isFine(*this)) {
            return QLatin1String(question.complaint);
        }
    }
    return {};
}
