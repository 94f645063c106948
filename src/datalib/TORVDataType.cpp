#include "datalib/TORVDataType.h"

#include <QCoreApplication>

#include <array>
#include <cassert>
#include <cstdint>
#include <limits>

namespace
{

struct Row
{
    int rawType;
    const char* name;
    const char* unit;
    int minRaw;
    int maxRaw;
    double (*toDisplay)(unsigned int raw, double nyquist);
    unsigned int (*toRaw)(double display, double nyquist);
};

unsigned int dtround(double x)
{
    assert(x + 0.5 >= 0.0);
    constexpr unsigned int Largest = std::numeric_limits<unsigned int>::max();
    const double shifted = x + 0.5;
    return shifted >= Largest ? Largest : static_cast<unsigned int>(shifted);
}

unsigned int limitedRound(double value, unsigned int max)
{
    if (value < 1.0) {
        return 1;
    }
    return value > max ? max : dtround(value);
}

// Rain rate in ten-thousandths of mm/h, packed into 4 bits of exponent and 12 of mantissa. The 1 that keeps 0 free for
// "no data" is added to the packed code when encoding and taken off the expanded value when decoding, so the two are
// inverses below 4096 only; products are written and read that way.
constexpr unsigned int MantissaBits = 12;
constexpr unsigned int MantissaMask = (1U << MantissaBits) - 1;
constexpr unsigned int HiddenBit = 1U << MantissaBits;
constexpr double RainSteps = 10000.0;

double rainToDisplay(unsigned int raw, double)
{
    const unsigned int exponent = raw >> MantissaBits;
    const uint32_t value = exponent == 0 ? raw : ((raw & MantissaMask) | HiddenBit) << ((exponent - 1) & 31U);
    return static_cast<uint32_t>(value - 1) / RainSteps;
}

unsigned int rainToRaw(double display, double)
{
    unsigned int mantissa = dtround(RainSteps * display);
    if (mantissa < HiddenBit) {
        return mantissa + 1;
    }
    unsigned int exponent = 1;
    while (mantissa > (HiddenBit | MantissaMask)) {
        mantissa >>= 1;
        ++exponent;
    }
    return ((mantissa & MantissaMask) | (exponent << MantissaBits)) + 1;
}

double plainToDisplay(unsigned int raw, double)
{
    return raw;
}

unsigned int plainToRaw(double display, double)
{
    return dtround(display);
}

double reflectivity8ToDisplay(unsigned int raw, double)
{
    return (static_cast<double>(raw) - 64.0) * 0.5;
}

unsigned int reflectivity8ToRaw(double display, double)
{
    return dtround(2.0 * display + 64.0);
}

double centred16ToDisplay(unsigned int raw, double)
{
    return (static_cast<double>(raw) - 32768.0) / 100.0;
}

unsigned int reflectivity16ToRaw(double display, double)
{
    return dtround(100.0 * display + 32768.0);
}

double width8ToDisplay(unsigned int raw, double nyquist)
{
    return raw * nyquist * 0.00390625;
}

unsigned int width8ToRaw(double display, double nyquist)
{
    return dtround((display / nyquist) * 256.0);
}

double width16ToDisplay(unsigned int raw, double)
{
    return raw / 100.0;
}

unsigned int width16ToRaw(double display, double)
{
    return dtround(100.0 * display);
}

double velocity8ToDisplay(unsigned int raw, double nyquist)
{
    return (static_cast<double>(raw) - 128.0) * nyquist / 127.0;
}

// The limit is one above the type's largest raw value, unlike that of the two-byte type.
unsigned int velocity8ToRaw(double display, double nyquist)
{
    return limitedRound((display / nyquist) * 127.0 + 128.0, 255);
}

unsigned int velocity16ToRaw(double display, double)
{
    return limitedRound(100.0 * display + 32768.0, 65534);
}

constexpr int NotListed = -1;
constexpr int Width8 = 4;
constexpr int Velocity8 = 3;
constexpr int Velocity16 = 10;

const std::array<Row, 8> Rows = {{
    {NotListed, QT_TRANSLATE_NOOP("TORVDataType", "Not available"), "NA", 1, 254, plainToDisplay, plainToRaw},
    {2, QT_TRANSLATE_NOOP("TORVDataType", "Reflectivity"), "dBZ", 1, 254, reflectivity8ToDisplay, reflectivity8ToRaw},
    {9, QT_TRANSLATE_NOOP("TORVDataType", "Reflectivity"), "dBZ", 1, 65534, centred16ToDisplay, reflectivity16ToRaw},
    {Width8, QT_TRANSLATE_NOOP("TORVDataType", "Spectrum width"), "m/s", 1, 254, width8ToDisplay, width8ToRaw},
    {11, QT_TRANSLATE_NOOP("TORVDataType", "Spectrum width"), "m/s", 1, 65534, width16ToDisplay, width16ToRaw},
    {13, QT_TRANSLATE_NOOP("TORVDataType", "Rainfall rate"), "mm/h", 1, 65534, rainToDisplay, rainToRaw},
    {Velocity8, QT_TRANSLATE_NOOP("TORVDataType", "Radial velocity"), "m/s", 1, 254, velocity8ToDisplay,
     velocity8ToRaw},
    {Velocity16, QT_TRANSLATE_NOOP("TORVDataType", "Radial velocity"), "m/s", 1, 65534, centred16ToDisplay,
     velocity16ToRaw},
}};

int rowOf(int rawType)
{
    for (std::size_t row = 1; row < Rows.size(); ++row) {
        if (Rows[row].rawType == rawType) {
            return static_cast<int>(row);
        }
    }
    return 0;
}

double velocityWidening(int prfRatioCode)
{
    switch (prfRatioCode & 0xFFFF) {
    case 1:
        return 2.0;
    case 2:
        return 3.0;
    case 3:
        return 4.0;
    default:
        return 1.0;
    }
}

} // namespace

TORVDataType::TORVDataType(int rawType) : _row(rowOf(rawType)) {}

TORVDataType::TORVDataType(int rawType, int prf, int prfRatioCode, int wavelength, int nyquistHalvingCode)
    : _row(rowOf(rawType))
{
    computeNyquistFactor(prf, prfRatioCode, wavelength, nyquistHalvingCode);
}

bool TORVDataType::operator==(const TORVDataType& other) const
{
    return _row == other._row && _nyquistFactor == other._nyquistFactor;
}

QString TORVDataType::getQuantityName() const
{
    return QCoreApplication::translate("TORVDataType", Rows[_row].name);
}

QString TORVDataType::getQuantityUnit() const
{
    return QLatin1String(Rows[_row].unit);
}

double TORVDataType::absoluteToDisplayValue(unsigned int raw) const
{
    return Rows[_row].toDisplay(raw, _nyquistFactor);
}

unsigned int TORVDataType::displayToAbsoluteValue(double display) const
{
    return Rows[_row].toRaw(display, _nyquistFactor);
}

int TORVDataType::getMinAbsValue() const
{
    return Rows[_row].minRaw;
}

int TORVDataType::getMaxAbsValue() const
{
    return Rows[_row].maxRaw;
}

double TORVDataType::getMinDisplayValue() const
{
    return absoluteToDisplayValue(static_cast<unsigned int>(getMinAbsValue()));
}

double TORVDataType::getMaxDisplayValue() const
{
    return absoluteToDisplayValue(static_cast<unsigned int>(getMaxAbsValue()));
}

int TORVDataType::getNoDataValue() const
{
    return Rows[_row].minRaw - 1;
}

int TORVDataType::getRawType() const
{
    return Rows[_row].rawType;
}

bool TORVDataType::isVelocity() const
{
    return getRawType() == Velocity8 || getRawType() == Velocity16;
}

QString TORVDataType::getDisplayStr(int raw) const
{
    if (raw == getNoDataValue()) {
        return QStringLiteral("NA");
    }
    return QString::number(absoluteToDisplayValue(static_cast<unsigned int>(raw)), 'f', 1);
}

void TORVDataType::computeNyquistFactor(int prf, int prfRatioCode, int wavelength, int nyquistHalvingCode)
{
    _nyquistFactor = 1.0;
    const int rawType = getRawType();
    if (rawType != Width8 && rawType != Velocity8) {
        return;
    }
    _nyquistFactor = static_cast<double>(wavelength) * prf / 40000.0;
    if (rawType == Velocity8) {
        _nyquistFactor *= velocityWidening(prfRatioCode);
    }
    if ((nyquistHalvingCode & 0xFFFF) == 2) {
        _nyquistFactor /= 2.0;
    }
}
