#include "settings/TORVLayerParameters.h"

#include "datalib/TORVDataType.h"
#include "datalib/TORVLandmarkSet.h"
#include "datalib/TORVTerrainSet.h"
#include "utils/TORVLog.h"

#include <QStringList>

#include <tuple>

namespace
{

constexpr double LowestUnknown = -9999.0;
constexpr double HighestUnknown = 9999.0;
constexpr double VolumeTop = 0.7; // of the largest display value
constexpr int Opaque = 100;

using LandmarkSet = boost::shared_ptr<const TORVLandmarkSet>;
using TerrainSet = boost::shared_ptr<const TORVTerrainSet>;

// --- comparison, by the type of the field ---

template <class Value>
bool differs(const Value& one, const Value& other)
{
    return one != other;
}

bool differs(const TORVFile::CPtr& one, const TORVFile::CPtr& other)
{
    if (!one || !other) {
        return one != other;
    }
    return one->getSite() != other->getSite() || one->getTime() != other->getTime() ||
           one->getProduct() != other->getProduct() || one->getConfiguration() != other->getConfiguration();
}

bool differs(const TORVCoordinate& one, const TORVCoordinate& other)
{
    return one.getLat() != other.getLat() || one.getLon() != other.getLon();
}

// Not the map's own comparison, which takes keys for equal where neither is below the other: NaN would equal all.
bool differs(const QMap<double, int>& one, const QMap<double, int>& other)
{
    if (one.size() != other.size()) {
        return true;
    }
    auto theirs = other.cbegin();
    for (auto ours = one.cbegin(); ours != one.cend(); ++ours, ++theirs) {
        if (ours.value() != theirs.value() || ours.key() != theirs.key()) {
            return true;
        }
    }
    return false;
}

// --- debug dump: a line or more, by the type of the field ---

QString text(double value)
{
    return QString::number(value, 'g', 6);
}

QString text(int value)
{
    return QString::number(value);
}

QString text(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

QString text(const QString& value)
{
    return value;
}

QString text(const TORVCoordinate& location)
{
    return text(location.getLat()) + QLatin1String(", ") + text(location.getLon());
}

QString text(const TORVFile::CPtr& file)
{
    return file ? file->getName() : QStringLiteral("null");
}

QString text(const TORVGeoProjection::CPtr& projection)
{
    return projection ? projection->getType() + QLatin1String(", ") + text(projection->getCentre())
                      : QStringLiteral("null");
}

QString text(const LandmarkSet& set)
{
    return set ? text(set->getCenter()) : QStringLiteral("null");
}

QString line(const char* name, const QString& value)
{
    return QLatin1String(name) + QLatin1Char('=') + value;
}

template <class Value>
QStringList lines(const char* name, const Value& value)
{
    return {line(name, text(value))};
}

QStringList lines(const char* name, const QMap<double, int>& surfaces)
{
    QStringList texts;
    for (auto surface = surfaces.cbegin(); surface != surfaces.cend(); ++surface) {
        texts << line(name, text(surface.key()) + QLatin1String(", ") + text(surface.value()));
    }
    return texts;
}

QStringList lines(const char* name, const TerrainSet& set)
{
    if (!set) {
        return {line(name, QStringLiteral("null"))};
    }
    return {line(name, set->getProjection() ? text(set->getProjection()->getCentre()) : QStringLiteral("null")),
            line("minLoc", text(set->getLowerLeft())), line("maxLoc", text(set->getUpperRight()))};
}

// --- tables of fields ---

struct Limits
{
    double low;
    double high;
    double volumeHigh;
};

Limits limitsOf(const TORVDataType* type)
{
    if (!type) {
        return {LowestUnknown, HighestUnknown, HighestUnknown};
    }
    const double high = type->getMaxDisplayValue();
    return {type->getMinDisplayValue(), high, high * VolumeTop};
}

template <class Parameters, class Value>
struct Field
{
    const char* name;
    Value Parameters::*member;
    Value (*initial)(const Limits&); // null: a reset leaves the field alone
};

template <class Parameters, class Value>
constexpr Field<Parameters, Value> field(const char* name, Value Parameters::*member,
                                         Value (*initial)(const Limits&) = nullptr)
{
    return {name, member, initial};
}

template <class Parameters, class Fields>
bool anyDiffers(const Parameters& one, const TORVLayerParameters& other, const Fields& fields)
{
    const auto* const same = dynamic_cast<const Parameters*>(&other);
    if (!same) {
        return false;
    }
    const auto isOther = [&one, same](const auto&... field) {
        return (differs(one.*field.member, same->*field.member) || ...);
    };
    return std::apply(isOther, fields);
}

template <class Parameters, class Fields>
void print(const char* heading, const Parameters& parameters, const Fields& fields)
{
    TORVLog* const log = TORVLog::Instance();
    if (!log->isShown(TORVLog::LEVEL_DEBUG)) {
        return;
    }
    QStringList texts{QLatin1String(heading)};
    std::apply([&](const auto&... field) { ((texts << lines(field.name, parameters.*field.member)), ...); }, fields);
    for (const QString& text : std::as_const(texts)) {
        log->logDebug(text);
    }
}

template <class Parameters, class Value>
void resetField(Parameters& parameters, const Field<Parameters, Value>& field, const Limits& limits)
{
    if (field.initial) {
        parameters.*field.member = field.initial(limits);
    }
}

} // namespace

// --- the base ---

TORVLayerParameters::~TORVLayerParameters() = default;

bool TORVLayerParameters::hasChanged(const TORVLayerParameters&) const
{
    return false;
}

void TORVLayerParameters::printDebug() const
{
    TORVLog::Instance()->logDebug(QStringLiteral("TORVLayerParameters: (no data)"));
}

// --- 3-D product ---

struct TORVLayerParameters3d::Table
{
    using P = TORVLayerParameters3d;
    using Surfaces = QMap<double, int>;

    static auto fields()
    {
        return std::make_tuple(
            field("dataFile", &P::_dataFile),
            field<P, RenderingType>("renderingType", &P::_renderingType,
                                    [](const Limits&) { return TORVProductSettings::SURFACE; }),
            field<P, QString>("colorScaleName", &P::_colorScaleName,
                              [](const Limits&) { return QStringLiteral("Default"); }),
            field<P, int>("dataShrinkH", &P::_dataShrinkH, [](const Limits&) { return 4; }),
            field<P, int>("dataShrinkV", &P::_dataShrinkV, [](const Limits&) { return 1; }),
            field<P, double>("dataSmooth", &P::_dataSmooth, [](const Limits&) { return 1.0; }),
            field<P, Surfaces>("surfaceIso", &P::_surfacePars,
                               [](const Limits& limits) {
                                   return Surfaces{{limits.low, Opaque}};
                               }),
            field<P, double>("volumeValueLow", &P::_volumeValueLow, [](const Limits& limits) { return limits.low; }),
            field<P, double>("volumeOpacityLow", &P::_volumeOpacityLow, [](const Limits&) { return 1.0; }),
            field<P, double>("volumeValueHigh", &P::_volumeValueHigh,
                             [](const Limits& limits) { return limits.volumeHigh; }),
            field<P, double>("volumeOpacityHigh", &P::_volumeOpacityHigh, [](const Limits&) { return 100.0; }));
    }
};

TORVLayerParameters3d::TORVLayerParameters3d()
{
    resetPars(nullptr);
    _surfacePars.clear();
}

void TORVLayerParameters3d::resetPars(const TORVDataType* type)
{
    const Limits limits = limitsOf(type);
    std::apply([&](const auto&... field) { (resetField(*this, field, limits), ...); }, Table::fields());
}

bool TORVLayerParameters3d::hasChanged(const TORVLayerParameters& other) const
{
    return anyDiffers(*this, other, Table::fields());
}

void TORVLayerParameters3d::printDebug() const
{
    print("TORVLayerParameters3d: ", *this, Table::fields());
}

// --- outline ---

struct TORVLayerParameters3dOutline::Table
{
    using P = TORVLayerParameters3dOutline;
    static auto fields()
    {
        return std::make_tuple(field("siteAltitude", &P::_siteAltitude), field("dataHeight", &P::_dataHeight),
                               field("tickInterval", &P::_tickInterval));
    }
};

bool TORVLayerParameters3dOutline::hasChanged(const TORVLayerParameters& other) const
{
    return anyDiffers(*this, other, Table::fields());
}

void TORVLayerParameters3dOutline::printDebug() const
{
    print("TORVLayerParameters3dOutline: ", *this, Table::fields());
}

// --- 2-D product ---

struct TORVLayerParameters2d::Table
{
    static auto fields() { return std::make_tuple(field("dataFile", &TORVLayerParameters2d::_dataFile)); }
};

bool TORVLayerParameters2d::hasChanged(const TORVLayerParameters& other) const
{
    return anyDiffers(*this, other, Table::fields());
}

void TORVLayerParameters2d::printDebug() const
{
    print("TORVLayerParameters2d: ", *this, Table::fields());
}

// --- range rings ---

struct TORVLayerParametersRadarRings::Table
{
    using P = TORVLayerParametersRadarRings;
    static auto fields()
    {
        return std::make_tuple(field("siteLocation", &P::_siteLocation), field("range", &P::_range),
                               field("metricUnits", &P::_metricUnits));
    }
};

bool TORVLayerParametersRadarRings::hasChanged(const TORVLayerParameters& other) const
{
    return anyDiffers(*this, other, Table::fields());
}

void TORVLayerParametersRadarRings::printDebug() const
{
    print("TORVLayerParametersRadarRings: ", *this, Table::fields());
}

// --- grid ---

struct TORVLayerParametersLatLonGrid::Table
{
    using P = TORVLayerParametersLatLonGrid;
    static auto fields()
    {
        return std::make_tuple(field("geoProjection", &P::_geoProjection), field("range", &P::_range));
    }
};

bool TORVLayerParametersLatLonGrid::hasChanged(const TORVLayerParameters& other) const
{
    return anyDiffers(*this, other, Table::fields());
}

void TORVLayerParametersLatLonGrid::printDebug() const
{
    print("TORVLayerParametersLatLonGrid: ", *this, Table::fields());
}

// --- labels ---

struct TORVLayerParametersGeoLabels::Table
{
    using P = TORVLayerParametersGeoLabels;
    static auto fields()
    {
        return std::make_tuple(field("refLocation", &P::_landmarkSet), field("geoProjection", &P::_geoProjection),
                               field("verticalScale", &P::_verticalScale),
                               field("terrainRefLocation", &P::_terrainSet));
    }
};

bool TORVLayerParametersGeoLabels::hasChanged(const TORVLayerParameters& other) const
{
    return anyDiffers(*this, other, Table::fields());
}

void TORVLayerParametersGeoLabels::printDebug() const
{
    print("TORVLayerParameters3d: ", *this, Table::fields()); // the heading that readers of these logs know
}

// --- terrain ---

struct TORVLayerParametersTerrain::Table
{
    static auto fields() { return std::make_tuple(field("refLocation", &TORVLayerParametersTerrain::_terrainSet)); }
};

bool TORVLayerParametersTerrain::hasChanged(const TORVLayerParameters& other) const
{
    return anyDiffers(*this, other, Table::fields());
}

void TORVLayerParametersTerrain::printDebug() const
{
    print("TORVLayerParameters3d: ", *this, Table::fields()); // as with the labels
}
