#pragma once

#include "settings/TORVDisplayState.h"
#include "settings/TORVViewAngle.h"
#include "utils/TORVCoordinate.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <vector>

class QDateTime;

/**
 * Everything that isn't tied to a product: clock and units, data directories, display quality, live mode, the animation
 * controls, and the two lists of named presets. It also formats what the user reads.
 *
 * There is no shared instance: whoever needs the values makes an object, which loads itself. Changes are found by
 * comparing two objects. Numbers from a file are brought into their ranges; what is none or not finite counts as
 * absent.
 *
 * Two viewers may work on one file: `save` writes only what the file lacks and what was changed since this object last
 * loaded or saved, and `saveCurrentDisplayState` and `saveCurrentViewAngle` leave the presets alone.
 *
 * Lengths inside the program are in metres (small) and kilometres (big).
 *
 * Ownership: presets are shared with whoever takes them from a list; so are those of a copy of the object.
 *
 * Thread: main thread only. Whatever loads or saves borrows the settings, so the caller must not hold them.
 */
class TORVGeneralSettings
{
public:
    /// In the file "d", "Dm" and "DMs"; any other text is the first.
    enum LatLonFormat : int
    {
        LATLON_D = 0,   ///< decimal degrees
        LATLON_DM = 1,  ///< degrees and decimal minutes
        LATLON_DMS = 2, ///< degrees, minutes and seconds
    };

    using DisplayStates = QList<TORVDisplayState::Ptr>;
    using ViewAngles = QList<TORVViewAngle::Ptr>;

    /// Loaded, but for the presets.
    TORVGeneralSettings();
    virtual ~TORVGeneralSettings();
    TORVGeneralSettings(const TORVGeneralSettings&) = default;
    TORVGeneralSettings& operator=(const TORVGeneralSettings&) = default;

    void load();
    void save() const;

    /// Back to the defaults, but for the directories and the presets. With `keepSession` only clock, units and display
    /// quality.
    void reset(bool keepSession);

    /**
     * Whether another value than those of the live mode differs.
     * @param reasons  gets a translated line for each kind of difference that has one, if not null
     */
    bool hasChanged(const TORVGeneralSettings& other, QStringList* reasons) const;

    /// Reads the state at exit into `current` and appends the presets to the list. Nothing happens where the file has
    /// none.
    void loadDisplayStates(const TORVDisplayState::Ptr& current);

    /// Writes the state at exit and all presets.
    void saveDisplayStates(const TORVDisplayState::Ptr& current) const;

    /// Writes the state at exit alone, whatever presets stand in the file.
    void saveCurrentDisplayState(const TORVDisplayState::Ptr& current) const;

    /// As for the display states. A view with a number that is none, not finite or beyond any scene has position and
    /// direction 0, by which whoever applies it knows that there is nothing to apply.
    void loadViewAngles(const TORVViewAngle::Ptr& current);
    void saveViewAngles(const TORVViewAngle::Ptr& current) const;
    void saveCurrentViewAngle(const TORVViewAngle::Ptr& current) const;

    /// The translated "Default", then the presets.
    QStringList getDisplayStateNames() const;
    QStringList getViewAngleNames() const;

    const DisplayStates& getDisplayStates() const { return _displayStates; }
    void setDisplayStates(const DisplayStates& states) { _displayStates = states; }
    const ViewAngles& getViewAngles() const { return _viewAngles; }
    void setViewAngles(const ViewAngles& angles) { _viewAngles = angles; }

    static LatLonFormat getLatLonFormatFromString(const QString& text);

    /// Translated: "km" or "NM", "m" or "ft".
    QString getLengthUnitBig() const;
    QString getLengthUnitSmall() const;

    /// In the chosen unit.
    double getCorrectLengthBig(double km) const;
    double getCorrectLengthSmall(double m) const;

    /// With the unit.
    QString formattedBigLength(double km, int decimals) const;
    QString formattedSmallLength(double m, int decimals) const;

    /// With and without the day of the week, which is written in the language of the program's texts.
    QString formattedTime(const QDateTime& time) const;
    QString formattedTimeShort(const QDateTime& time) const;

    /// The form with decimal minutes closes them with a double quote, as the coordinate has it.
    QString formatCoordinates(const TORVCoordinate& coordinate, TORVCoordinate::Modifier modifier) const;
    QString formatLatitude(const TORVCoordinate& coordinate) const;
    QString formatLongitude(const TORVCoordinate& coordinate) const;

    bool isLiveMode() const { return _values.liveMode; }
    void setLiveMode(bool on) { _values.liveMode = on; }
    QString getLiveSite() const { return _values.liveSite; }
    void setLiveSite(const QString& site) { _values.liveSite = site; }
    QString getLiveProduct3D() const { return _values.liveProduct3D; }
    void setLiveProduct3D(const QString& product) { _values.liveProduct3D = product; }
    QString getLiveProduct2D() const { return _values.liveProduct2D; }
    void setLiveProduct2D(const QString& product) { _values.liveProduct2D = product; }

    bool is24hClock() const { return _values.is24hClock; }
    void set24hClock(bool on) { _values.is24hClock = on; }
    bool isMetricUnits() const { return _values.isMetricUnits; }
    void setMetricUnits(bool on) { _values.isMetricUnits = on; }
    LatLonFormat getLatLonFormat() const { return _values.latLonFormat; }
    void setLatLonFormat(LatLonFormat format) { _values.latLonFormat = format; }

    QString getGeoDir() const { return _values.geoDir; }
    void setGeoDir(const QString& directory) { _values.geoDir = directory; }
    QString get3DDir() const { return _values.data3DDir; }
    void set3DDir(const QString& directory) { _values.data3DDir = directory; }
    QString get2DDir() const { return _values.data2DDir; }
    void set2DDir(const QString& directory) { _values.data2DDir = directory; }

    double getVerticalScale() const { return _values.verticalScale; } ///< 1 to 50
    void setVerticalScale(double scale) { _values.verticalScale = scale; }

    /// Only every so-maniest point of the data is used: 1 to 4.
    int getDataShrinkH() const { return _values.dataShrinkH; }
    void setDataShrinkH(int divisor) { _values.dataShrinkH = divisor; }
    int getDataShrinkV() const { return _values.dataShrinkV; }
    void setDataShrinkV(int divisor) { _values.dataShrinkV = divisor; }

    double getDataSmooth() const { return _values.dataSmooth; } ///< 0 to 10
    void setDataSmooth(double amount) { _values.dataSmooth = amount; }

    int getTimeWindow() const { return _values.timeWindow; } ///< seconds, the whole width
    void setTimeWindow(int seconds) { _values.timeWindow = seconds; }

    /// Indices of the entries of the animation's combo boxes.
    int getAnimationTimeSpan() const { return _values.animationTimeSpan; } ///< 0 to 3
    void setAnimationTimeSpan(int index) { _values.animationTimeSpan = index; }
    int getAnimationFrameInterval() const { return _values.animationFrameInterval; } ///< 0 to 3
    void setAnimationFrameInterval(int index) { _values.animationFrameInterval = index; }
    int getAnimationLoopMode() const { return _values.animationLoopMode; } ///< 0 to 1
    void setAnimationLoopMode(int index) { _values.animationLoopMode = index; }
    int getAnimationSpeed() const { return _values.animationSpeed; } ///< 0 to 4
    void setAnimationSpeed(int index) { _values.animationSpeed = index; }

private:
    // Defaults and ranges stand in the table of fields.
    struct Values
    {
        bool liveMode = false;
        QString liveSite;
        QString liveProduct3D;
        QString liveProduct2D;
        bool is24hClock = true;
        bool isMetricUnits = true;
        LatLonFormat latLonFormat = LATLON_D;
        QString geoDir;
        QString data3DDir;
        QString data2DDir;
        double verticalScale = 0.0;
        int dataShrinkH = 0;
        int dataShrinkV = 0;
        double dataSmooth = 0.0;
        int timeWindow = 0;
        int animationTimeSpan = 0;
        int animationFrameInterval = 0;
        int animationLoopMode = 0;
        int animationSpeed = 0;
    };

    struct Row;
    static const std::vector<Row>& rows();

    QString formatted(const QDateTime& time, const char* format) const;

    Values _values;
    mutable Values _stored; // as this object last saw them in the file
    DisplayStates _displayStates;
    ViewAngles _viewAngles;
};
