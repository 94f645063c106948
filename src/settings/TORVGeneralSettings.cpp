#include "settings/TORVGeneralSettings.h"

#include "settings/TORVConfig.h"
#include "settings/TORVSettingsField.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>

#include <array>
#include <limits>

namespace
{

constexpr double FeetPerMetre = 3.2808399;
constexpr double KilometresPerNauticalMile = 1.853184;

enum Reset
{
    RESET_NEVER,
    RESET_SESSION, // only when the session isn't kept
    RESET_ALWAYS
};

// In the order in which differences are told.
enum Reason
{
    REASON_UNITS,
    REASON_RESOLUTION,
    REASON_SMOOTHING,
    REASON_VERTICAL_SCALE,
    REASON_GEO_PATH,
    REASON_3D_PATH,
    REASON_2D_PATH,
    REASON_UNTOLD,
    REASON_NONE
};

const std::array<const char*, REASON_UNTOLD> ReasonTexts = {
    QT_TRANSLATE_NOOP("App", "- Unit settings changed"),  QT_TRANSLATE_NOOP("App", "- Data resolution changed"),
    QT_TRANSLATE_NOOP("App", "- Data smoothing changed"), QT_TRANSLATE_NOOP("App", "- Vertical scaling changed"),
    QT_TRANSLATE_NOOP("App", "- Geo data path changed"),  QT_TRANSLATE_NOOP("App", "- 3d data path changed"),
    QT_TRANSLATE_NOOP("App", "- 2d data path changed"),
};

const TORVNamedValues<TORVGeneralSettings::LatLonFormat>& latLonFormats()
{
    using Settings = TORVGeneralSettings;
    static const TORVNamedValues<Settings::LatLonFormat> names(
        {{Settings::LATLON_D, "d"}, {Settings::LATLON_DM, "Dm"}, {Settings::LATLON_DMS, "DMs"}}, Settings::LATLON_D,
        "d");
    return names;
}

using CoordinateFormat = QString (TORVCoordinate::*)(TORVCoordinate::Modifier) const;

// The text "Dm" leads to the format called "DMs" and the other way round: the coordinate's names are the wrong ones,
// and users' files hold these texts.
CoordinateFormat coordinateFormat(TORVGeneralSettings::LatLonFormat format)
{
    switch (format) {
    case TORVGeneralSettings::LATLON_DM:
        return &TORVCoordinate::toDMsString;
    case TORVGeneralSettings::LATLON_DMS:
        return &TORVCoordinate::toDmString;
    case TORVGeneralSettings::LATLON_D:
        break;
    }
    return &TORVCoordinate::toDecimalString;
}

} // namespace

struct TORVGeneralSettings::Row
{
    TORVSettingsField<Values> field;
    Reset reset;
    Reason reason;
};

const std::vector<TORVGeneralSettings::Row>& TORVGeneralSettings::rows()
{
    using F = TORVSettingsField<Values>;
    using V = Values;
    constexpr int Forever = std::numeric_limits<int>::max();
    static const std::vector<Row> table = {
        {F::flag("livemode", &V::liveMode, false), RESET_SESSION, REASON_NONE},
        {F::text("livemode_site", &V::liveSite, ""), RESET_SESSION, REASON_NONE},
        {F::text("livemode_product3d", &V::liveProduct3D, ""), RESET_SESSION, REASON_NONE},
        {F::text("livemode_product2d", &V::liveProduct2D, ""), RESET_SESSION, REASON_NONE},
        {F::flag(TORVConfig::GENERAL_CLOCK, &V::is24hClock, true), RESET_ALWAYS, REASON_UNITS},
        {F::flag(TORVConfig::GENERAL_UNITS, &V::isMetricUnits, true), RESET_ALWAYS, REASON_UNITS},
        {F::choice(TORVConfig::GENERAL_LATLON_UNITS, &V::latLonFormat, LATLON_D, latLonFormats()), RESET_ALWAYS,
         REASON_UNITS},
        {F::text(TORVConfig::GENERAL_GEOLAYER_URL, &V::geoDir, ""), RESET_NEVER, REASON_GEO_PATH},
        {F::text(TORVConfig::GENERAL_DATA3D_URL, &V::data3DDir, ""), RESET_NEVER, REASON_3D_PATH},
        {F::text(TORVConfig::GENERAL_DATA2D_URL, &V::data2DDir, ""), RESET_NEVER, REASON_2D_PATH},
        {F::real("verticalscale", &V::verticalScale, 5.0, 1.0, 50.0), RESET_ALWAYS, REASON_VERTICAL_SCALE},
        {F::integer("datashrink_h", &V::dataShrinkH, 4, 1, 4), RESET_ALWAYS, REASON_RESOLUTION},
        {F::integer("datashrink_v", &V::dataShrinkV, 1, 1, 4), RESET_ALWAYS, REASON_RESOLUTION},
        {F::real("datasmooth", &V::dataSmooth, 1.0, 0.0, 10.0), RESET_ALWAYS, REASON_SMOOTHING},
        {F::integer("timewindow", &V::timeWindow, 180, 0, Forever), RESET_SESSION, REASON_UNTOLD},
        {F::integer("animtimespan", &V::animationTimeSpan, 0, 0, 3), RESET_SESSION, REASON_UNTOLD},
        {F::integer("animframeinterval", &V::animationFrameInterval, 0, 0, 3), RESET_SESSION, REASON_UNTOLD},
        {F::integer("animloopmode", &V::animationLoopMode, 0, 0, 1), RESET_SESSION, REASON_UNTOLD},
        {F::integer("animspeed", &V::animationSpeed, 0, 0, 4), RESET_SESSION, REASON_UNTOLD},
    };
    return table;
}

TORVGeneralSettings::TORVGeneralSettings()
{
    load();
}

TORVGeneralSettings::~TORVGeneralSettings() = default;

void TORVGeneralSettings::load()
{
    QSettings& settings = *TORVConfig::instance()->get();
    for (const Row& row : rows()) {
        row.field.read(TORVConfig::generalValue(settings, row.field.key()), _values);
    }
    TORVConfig::instance()->release();
    _stored = _values;
}

void TORVGeneralSettings::save() const
{
    saveRecord(TORVConfig::GENERAL_GROUP, rows(), _values, _stored);
}

void TORVGeneralSettings::reset(bool keepSession)
{
    for (const Row& row : rows()) {
        if (row.reset == RESET_ALWAYS || (row.reset == RESET_SESSION && !keepSession)) {
            row.field.reset(_values);
        }
    }
}

bool TORVGeneralSettings::hasChanged(const TORVGeneralSettings& other, QStringList* reasons) const
{
    std::array<bool, REASON_NONE + 1> changed = {};
    for (const Row& row : rows()) {
        changed[row.reason] = changed[row.reason] || row.field.differs(_values, other._values);
    }
    bool result = changed[REASON_UNTOLD];
    for (std::size_t reason = 0; reason < ReasonTexts.size(); ++reason) {
        result = result || changed[reason];
        if (changed[reason] && reasons) {
            reasons->append(QCoreApplication::translate("App", ReasonTexts[reason]));
        }
    }
    return result;
}

TORVGeneralSettings::LatLonFormat TORVGeneralSettings::getLatLonFormatFromString(const QString& text)
{
    return latLonFormats().value(text);
}

QString TORVGeneralSettings::getLengthUnitBig() const
{
    return isMetricUnits() ? QCoreApplication::translate("App", "km") : QCoreApplication::translate("App", "NM");
}

QString TORVGeneralSettings::getLengthUnitSmall() const
{
    return isMetricUnits() ? QCoreApplication::translate("App", "m") : QCoreApplication::translate("App", "ft");
}

double TORVGeneralSettings::getCorrectLengthBig(double km) const
{
    return isMetricUnits() ? km : km / KilometresPerNauticalMile;
}

double TORVGeneralSettings::getCorrectLengthSmall(double m) const
{
    return isMetricUnits() ? m : m * FeetPerMetre;
}

QString TORVGeneralSettings::formattedBigLength(double km, int decimals) const
{
    return QString::number(getCorrectLengthBig(km), 'f', decimals) + QLatin1Char(' ') + getLengthUnitBig();
}

QString TORVGeneralSettings::formattedSmallLength(double m, int decimals) const
{
    return QString::number(getCorrectLengthSmall(m), 'f', decimals) + QLatin1Char(' ') + getLengthUnitSmall();
}

QString TORVGeneralSettings::formatted(const QDateTime& time, const char* format) const
{
    // The system's locale may speak another language than the rest of the window.
    const QLocale locale(QCoreApplication::translate("App", "C", "locale in which dates and times are written"));
    const QLatin1String suffix(is24hClock() ? "" : " AP");
    return locale.toString(time, QLatin1String(format) + suffix);
}

QString TORVGeneralSettings::formattedTime(const QDateTime& time) const
{
    return formatted(time, "ddd yyyy-MM-dd hh:mm");
}

QString TORVGeneralSettings::formattedTimeShort(const QDateTime& time) const
{
    return formatted(time, "yyyy-MM-dd hh:mm");
}

QString TORVGeneralSettings::formatCoordinates(const TORVCoordinate& coordinate,
                                               TORVCoordinate::Modifier modifier) const
{
    return (coordinate.*coordinateFormat(getLatLonFormat()))(modifier);
}

QString TORVGeneralSettings::formatLatitude(const TORVCoordinate& coordinate) const
{
    return formatCoordinates(coordinate, TORVCoordinate::LATITUDE_ONLY);
}

QString TORVGeneralSettings::formatLongitude(const TORVCoordinate& coordinate) const
{
    return formatCoordinates(coordinate, TORVCoordinate::LONGITUDE_ONLY);
}
