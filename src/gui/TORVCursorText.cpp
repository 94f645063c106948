#include "gui/TORVCursorText.h"

#include "datalib/TORVDataType.h"
#include "settings/TORVGeneralSettings.h"

#include <cmath>

namespace
{

constexpr int DistanceDecimals = 1; // kilometres or nautical miles
constexpr int HeightDecimals = 0;   // metres or feet
constexpr int AngleDecimals = 1;
constexpr QChar DegreeSign(0x00B0);

double withoutLostSign(double value, int decimals)
{
    const double half = std::pow(10.0, -decimals) / 2.0;
    return std::abs(value) < half ? 0.0 : value;
}

} // namespace

QString TORVCursorText::height(const TORVGeneralSettings& settings, double metres)
{
    const bool isNothing = withoutLostSign(settings.getCorrectLengthSmall(metres), HeightDecimals) == 0.0;
    return settings.formattedSmallLength(isNothing ? 0.0 : metres, HeightDecimals);
}

QString TORVCursorText::distance(const TORVGeneralSettings& settings, double km)
{
    return settings.formattedBigLength(km, DistanceDecimals);
}

QString TORVCursorText::directed(const TORVGeneralSettings& settings, double km, const QString& positive,
                                 const QString& negative)
{
    const bool isNegative = withoutLostSign(settings.getCorrectLengthBig(km), DistanceDecimals) < 0.0;
    return distance(settings, std::abs(km)) + (isNegative ? negative : positive);
}

QString TORVCursorText::angle(double degrees)
{
    return QString::number(withoutLostSign(degrees, AngleDecimals), 'f', AngleDecimals) + DegreeSign;
}

QString TORVCursorText::widestCoordinates(const TORVGeneralSettings& settings)
{
    return settings.formatCoordinates(TORVCoordinate(-88.888888, -168.888888), TORVCoordinate::LATITUDE_AND_LONGITUDE);
}

QString TORVCursorText::widestValue(const TORVDataType& type)
{
    return type.getMinDisplayValue() < 0.0 ? QStringLiteral("-88.8") : QStringLiteral("888.8");
}
