#include "radarsim/TORVProductMaker.h"

#include "datalib/TORVDataType.h"
#include "radarsim/TORVProductWriter.h"
#include "radarsim/TORVRadarEquations.h"

#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace
{

constexpr float Nothing = TORVPolarVolume::Nothing;
constexpr float FlatCappiHeight = 1.0F; // km
constexpr float WeakestRain = 0.1F;     // mm/h
constexpr float RainHailCap = 53.0F;    // dBZ; what reflects more is hail, not rain

TORVDataType dataType(const TORVProductFields& fields)
{
    return TORVDataType(fields.dataType, fields.prf, fields.prfRatioCode, fields.wavelength, fields.nyquistHalvingCode);
}

/// Raw items; what the type can't hold is brought to its nearer end.
QByteArray encoded(const std::vector<float>& values, const TORVDataType& type, int itemSize)
{
    QByteArray data(static_cast<int>(values.size() * static_cast<std::size_t>(itemSize)), '\0');
    const double low = type.getMinDisplayValue();
    const double high = type.getMaxDisplayValue();
    char* out = data.data();
    for (const float value : values) {
        if (value != Nothing) {
            const unsigned int raw = type.displayToAbsoluteValue(std::clamp(static_cast<double>(value), low, high));
            if (itemSize == 1) {
                *out = static_cast<char>(raw);
            } else {
                qToLittleEndian(static_cast<uint16_t>(raw), out);
            }
        }
        out += itemSize;
    }
    return data;
}

} // namespace

TORVProductMaker::TORVProductMaker(const TORVVolumeGridder& gridder, const TORVPolarVolume& volume,
                                   const TORVProductFields& header)
    : _gridder(gridder), _volume(volume), _header(header), _dbz(gridder.grid(volume, volume.dbz))
{
}

QByteArray TORVProductMaker::file(const TORVProductKind& kind, bool wide) const
{
    constexpr uint16_t RainType = 13;
    TORVProductFields fields = _header;
    fields.productType = kind.productType;
    fields.dataType = wide ? kind.wideType : kind.narrowType;
    const bool isWide = fields.dataType == RainType || (wide && kind.wideType != kind.narrowType);
    if (!kind.isVolume) {
        fields.zPoints = 1;
    }
    return TORVProductWriter::file(fields, encoded(values(kind), dataType(fields), isWide ? 2 : 1));
}

std::vector<float> TORVProductMaker::values(const TORVProductKind& kind) const
{
    switch (kind.id) {
    case TORVProductKind::Z:
        return _dbz;
    case TORVProductKind::V:
        return foldedVelocity();
    case TORVProductKind::W:
        return _gridder.grid(_volume, _volume.width);
    case TORVProductKind::R:
        return rain(_dbz);
    case TORVProductKind::MAX:
        return highest();
    case TORVProductKind::VIL:
        return integratedWater();
    case TORVProductKind::SRI:
        return rain(lowest());
    case TORVProductKind::PPI:
        return _gridder.sweep(_volume, _volume.dbz, 0);
    case TORVProductKind::CAPPI:
        return level(FlatCappiHeight);
    }
    return {};
}

std::vector<float> TORVProductMaker::foldedVelocity() const
{
    std::vector<float> velocities = _gridder.grid(_volume, _volume.velocity);
    const auto turns = static_cast<float>(_header.prfRatioCode + 1);
    const float nyquist = static_cast<float>(_header.wavelength * _header.prf) / 40000.0F * turns;
    for (float& velocity : velocities) {
        if (velocity != Nothing) {
            velocity = TORVRadarEquations::folded(velocity, nyquist);
        }
    }
    return velocities;
}

std::vector<float> TORVProductMaker::rain(std::vector<float> dbz) const
{
    for (float& value : dbz) {
        if (value != Nothing) {
            const float rate = TORVRadarEquations::rainRate(std::min(value, RainHailCap));
            value = rate < WeakestRain ? Nothing : rate;
        }
    }
    return dbz;
}

std::vector<float> TORVProductMaker::highest() const
{
    const std::size_t plane = _gridder.shape().planeSize();
    std::vector<float> strongest(_dbz.begin(), _dbz.begin() + static_cast<std::ptrdiff_t>(plane));
    for (std::size_t i = plane; i < _dbz.size(); ++i) {
        strongest[i % plane] = std::max(strongest[i % plane], _dbz[i]);
    }
    return strongest;
}

std::vector<float> TORVProductMaker::integratedWater() const
{
    constexpr float Least = 0.5F; // kg/m^2; less than that rounds to no data
    const std::size_t plane = _gridder.shape().planeSize();
    const float depth = static_cast<float>(_gridder.shape().zScale()) * 0.01F;
    std::vector<float> water(plane, 0.0F);
    for (std::size_t i = 0; i < _dbz.size(); ++i) {
        if (_dbz[i] != Nothing) {
            water[i % plane] += depth * TORVRadarEquations::liquidWater(_dbz[i]);
        }
    }
    std::replace_if(
        water.begin(), water.end(), [](float value) { return value < Least; }, Nothing);
    return water;
}

std::vector<float> TORVProductMaker::lowest() const
{
    constexpr float HighestUseful = 4.0F; // km above the antenna
    const std::size_t plane = _gridder.shape().planeSize();
    const float depth = static_cast<float>(_gridder.shape().zScale()) * 1e-5F;
    const int levels = std::min(_gridder.shape().z, 1 + static_cast<int>(HighestUseful / depth));
    std::vector<float> values(plane, Nothing);
    for (int k = 0; k < levels; ++k) {
        const float* from = &_dbz[static_cast<std::size_t>(k) * plane];
        for (std::size_t i = 0; i < plane; ++i) {
            values[i] = values[i] == Nothing ? from[i] : values[i];
        }
    }
    return values;
}

std::vector<float> TORVProductMaker::level(float height) const
{
    const float depth = static_cast<float>(_gridder.shape().zScale()) * 1e-5F;
    const int k = std::min(_gridder.shape().z - 1, static_cast<int>(std::lround(height / depth)));
    const auto first =
        _dbz.begin() + static_cast<std::ptrdiff_t>(static_cast<std::size_t>(k) * _gridder.shape().planeSize());
    return {first, first + static_cast<std::ptrdiff_t>(_gridder.shape().planeSize())};
}
