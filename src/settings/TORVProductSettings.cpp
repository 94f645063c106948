#include "settings/TORVProductSettings.h"

#include "datalib/TORVDataType.h"
#include "settings/TORVConfig.h"
#include "settings/TORVNamedValues.h"
#include "utils/TORVLog.h"
#include "utils/TORVSettingsReader.h"

#include <QSettings>
#include <QVariant>

#include <algorithm>
#include <iterator>
#include <limits>

namespace
{

const QString ColorScaleKey = QStringLiteral("colormap");

constexpr int FullOpacity = 100;
constexpr double RampTop = 0.7; // of the largest display value
constexpr double UnknownMinimum = -9999.0;
constexpr double UnknownMaximum = 9999.0;
constexpr double LargestNumber = std::numeric_limits<double>::max();

const TORVNamedValues<TORVProductSettings::RenderingType>& renderingTypes()
{
    static const TORVNamedValues<TORVProductSettings::RenderingType> names(
        {{TORVProductSettings::VOLUME, "volume"}, {TORVProductSettings::SURFACE, "surface"}},
        TORVProductSettings::UNKNOWN, "unknown");
    return names;
}

// What defaults depend on.
struct Range
{
    double minimum;
    double rampTop;
};

Range rangeOf(const TORVDataType* type)
{
    if (!type) {
        return {UnknownMinimum, UnknownMaximum};
    }
    const double minimum = static_cast<int>(type->getMinDisplayValue());
    const double maximum = static_cast<int>(type->getMaxDisplayValue());
    return {minimum, maximum * RampTop};
}

// What an earlier, longer list has left in the file.
void removeSurplus(QSettings& settings, int size)
{
    settings.beginGroup(TORVConfig::PRODUCT_SURFACE_ARRAY);
    const QStringList numbers = settings.childGroups();
    for (const QString& number : numbers) {
        if (number.toInt() > size) {
            settings.remove(number);
        }
    }
    settings.endGroup();
}

double always1(const Range&)
{
    return 1.0;
}

double alwaysFull(const Range&)
{
    return FullOpacity;
}

double minimumOf(const Range& range)
{
    return range.minimum;
}

double rampTopOf(const Range& range)
{
    return range.rampTop;
}

} // namespace

struct TORVProductSettings::Number
{
    const QString& key;
    double TORVProductSettings::*member;
    double (*byDefault)(const Range& range);
    double min;
    double max;
};

const TORVProductSettings::Number TORVProductSettings::Numbers[] = {
    {TORVConfig::PRODUCT_VOLUME_VALUE_LOW, &TORVProductSettings::_volumeValueLow, minimumOf, -LargestNumber,
     LargestNumber},
    {TORVConfig::PRODUCT_VOLUME_OPACITY_LOW, &TORVProductSettings::_volumeOpacityLow, always1, 0.0, FullOpacity},
    {TORVConfig::PRODUCT_VOLUME_VALUE_HIGH, &TORVProductSettings::_volumeValueHigh, rampTopOf, -LargestNumber,
     LargestNumber},
    {TORVConfig::PRODUCT_VOLUME_OPACITY_HIGH, &TORVProductSettings::_volumeOpacityHigh, alwaysFull, 0.0, FullOpacity},
};

TORVProductSettings::TORVProductSettings(const QString& product, const QString& configuration, const TORVDataType& type)
{
    load(product, configuration, type);
}

TORVProductSettings::~TORVProductSettings() = default;

void TORVProductSettings::load(const QString& product, const QString& configuration, const TORVDataType& type)
{
    _product = product;
    _configuration = configuration;
    _surfaces.clear();
    QSettings& settings = *TORVConfig::instance()->get();
    settings.beginGroup(groupName());
    const bool isKnown = settings.contains(TORVConfig::PRODUCT_RENDERING_TYPE);
    if (isKnown) {
        readValues(settings, type);
    }
    settings.endGroup();
    TORVConfig::instance()->release();
    if (isKnown) {
        return;
    }
    TORVLog::Instance()->logDebug(QLatin1String("TORVProductSettings::load(): Group not found: ") + groupName());
    TORVLog::Instance()->logDebug(QStringLiteral("-> Generating new default rendering settings."));
    reset(&type);
    save();
}

void TORVProductSettings::readValues(QSettings& settings, const TORVDataType& type)
{
    const Range range = rangeOf(&type);
    const auto text = [&settings](const QString& key, const QString& byDefault) {
        return TORVSettingsReader::text(settings.value(key), byDefault);
    };
    _renderingType = renderingTypes().value(text(TORVConfig::PRODUCT_RENDERING_TYPE, renderingTypes().text(SURFACE)));
    _colorScaleName = text(ColorScaleKey, TORVConfig::VALUE_DEFAULT);
    readSurfaces(settings, range.minimum);
    for (const Number& number : Numbers) {
        this->*number.member =
            TORVSettingsReader::real(settings.value(number.key), number.byDefault(range), number.min, number.max);
    }
}

void TORVProductSettings::readSurfaces(QSettings& settings, double byDefault)
{
    const int size = settings.beginReadArray(TORVConfig::PRODUCT_SURFACE_ARRAY);
    for (const int index : TORVSettingsReader::arrayIndexes(settings, size)) {
        settings.setArrayIndex(index);
        const double value = TORVSettingsReader::real(settings.value(TORVConfig::PRODUCT_SURFACE_VALUE), byDefault,
                                                      -LargestNumber, LargestNumber);
        _surfaces.insert(value, TORVSettingsReader::integer(settings.value(TORVConfig::PRODUCT_SURFACE_OPACITY),
                                                            FullOpacity, 0, FullOpacity));
    }
    settings.endArray();
}

void TORVProductSettings::save() const
{
    QSettings& settings = *TORVConfig::instance()->get();
    settings.beginGroup(groupName());
    settings.setValue(TORVConfig::PRODUCT_RENDERING_TYPE, renderingTypeToString());
    settings.setValue(ColorScaleKey, _colorScaleName);
    writeSurfaces(settings);
    for (const Number& number : Numbers) {
        settings.setValue(number.key, this->*number.member);
    }
    settings.endGroup();
    TORVConfig::instance()->release();
}

void TORVProductSettings::writeSurfaces(QSettings& settings) const
{
    settings.beginWriteArray(TORVConfig::PRODUCT_SURFACE_ARRAY, _surfaces.size());
    int index = 0;
    for (auto surface = _surfaces.cbegin(); surface != _surfaces.cend(); ++surface) {
        settings.setArrayIndex(index++);
        settings.setValue(TORVConfig::PRODUCT_SURFACE_VALUE, surface.key());
        settings.setValue(TORVConfig::PRODUCT_SURFACE_OPACITY, surface.value());
    }
    settings.endArray();
    removeSurplus(settings, _surfaces.size());
}

void TORVProductSettings::reset(const TORVDataType* type)
{
    const Range range = rangeOf(type);
    _colorScaleName = TORVConfig::VALUE_DEFAULT;
    _renderingType = SURFACE;
    _surfaces = {{range.minimum, FullOpacity}};
    for (const Number& number : Numbers) {
        this->*number.member = number.byDefault(range);
    }
}

bool TORVProductSettings::hasChanged(const boost::shared_ptr<const TORVProductSettings>& other,
                                     QStringList* reasons) const
{
    QStringList found;
    if (_renderingType != other->_renderingType) {
        found << (other->_renderingType == SURFACE ? QStringLiteral("- Changed to surface rendering")
                                                   : QStringLiteral("- Changed to volume rendering"));
    }
    if (other->_renderingType == SURFACE && _surfaces != other->_surfaces) {
        found << QStringLiteral("- Isosurface parameters changed");
    }
    if (other->_renderingType == VOLUME && hasOtherNumbers(*other)) {
        found << QStringLiteral("- Volume parameters changed");
    }
    if (_colorScaleName != other->_colorScaleName) {
        found << QStringLiteral("- Color map: %1 -> %2").arg(_colorScaleName, other->_colorScaleName);
    }
    if (reasons) {
        *reasons += found;
    }
    return !found.isEmpty();
}

bool TORVProductSettings::hasOtherNumbers(const TORVProductSettings& other) const
{
    return std::any_of(std::cbegin(Numbers), std::cend(Numbers),
                       [this, &other](const Number& number) { return this->*number.member != other.*number.member; });
}

QString TORVProductSettings::renderingTypeToString() const
{
    return renderingTypes().text(_renderingType);
}

QString TORVProductSettings::groupName() const
{
    QString name = TORVConfig::PRODUCT_GROUP + QLatin1Char(' ') + _product + QLatin1Char(' ') + _configuration;
    // To QSettings a slash opens a group inside the group.
    return name.replace(QLatin1Char('/'), QLatin1Char('\\'));
}
