#pragma once

#include "datalib/TORVFile.h"
#include "settings/TORVProductSettings.h"
#include "utils/TORVCoordinate.h"
#include "utils/TORVGeoProjection.h"

#include <QMap>
#include <QString>

#include <boost/shared_ptr.hpp>

class TORVDataType;
class TORVLandmarkSet;
class TORVTerrainSet;

/**
 * The complete input of a visual element. An element is built anew when, and only when, `hasChanged` tells new
 * parameters from those that it was last built with.
 *
 * Each class lists its fields once, in a table of its source from which comparison, debug dump and reset are made.
 * Numbers are compared exactly, so that a NaN differs from everything. Projections and sets are compared by pointer,
 * product files by what they are: the same file opened again is no change.
 *
 * Thread: plain values; an object that two threads share is never changed.
 */
class TORVLayerParameters
{
public:
    using Ptr = boost::shared_ptr<TORVLayerParameters>;
    using CPtr = boost::shared_ptr<const TORVLayerParameters>;

    TORVLayerParameters() = default;
    TORVLayerParameters(const TORVLayerParameters&) = default;
    TORVLayerParameters& operator=(const TORVLayerParameters&) = default;
    virtual ~TORVLayerParameters();

    /// Never changed where `other` is of another class.
    virtual bool hasChanged(const TORVLayerParameters& other) const;

    /// One line a field, at debug level.
    virtual void printDebug() const;
};

/// Of the 3-D product.
class TORVLayerParameters3d final : public TORVLayerParameters
{
public:
    using Ptr = boost::shared_ptr<TORVLayerParameters3d>;
    using CPtr = boost::shared_ptr<const TORVLayerParameters3d>;
    using RenderingType = TORVProductSettings::RenderingType;

    /// As `resetPars(nullptr)` leaves it, but without a surface.
    TORVLayerParameters3d();

    /// Everything but the data file: one opaque surface at the type's minimum, a volume from there to 70 % of the
    /// maximum. Without a type -9999 and 9999 stand for the limits.
    void resetPars(const TORVDataType* type);

    bool hasChanged(const TORVLayerParameters& other) const override;
    void printDebug() const override;

    const TORVFile::CPtr& getDataFile() const { return _dataFile; }
    void setDataFile(const TORVFile::CPtr& file) { _dataFile = file; }
    RenderingType getRenderingType() const { return _renderingType; }
    void setRenderingType(RenderingType type) { _renderingType = type; }
    const QString& getColorScaleName() const { return _colorScaleName; }
    void setColorScaleName(const QString& name) { _colorScaleName = name; }
    int getDataShrinkH() const { return _dataShrinkH; } ///< every how many points
    void setDataShrinkH(int divisor) { _dataShrinkH = divisor; }
    int getDataShrinkV() const { return _dataShrinkV; }
    void setDataShrinkV(int divisor) { _dataShrinkV = divisor; }
    double getDataSmooth() const { return _dataSmooth; } ///< standard deviation in points
    void setDataSmooth(double smooth) { _dataSmooth = smooth; }
    const QMap<double, int>& getSurfacePars() const { return _surfacePars; } ///< display value to opacity in percent
    void setSurfacePars(const QMap<double, int>& pars) { _surfacePars = pars; }
    double getVolumeValueLow() const { return _volumeValueLow; } ///< display value
    void setVolumeValueLow(double value) { _volumeValueLow = value; }
    double getVolumeOpacityLow() const { return _volumeOpacityLow; } ///< percent
    void setVolumeOpacityLow(double opacity) { _volumeOpacityLow = opacity; }
    double getVolumeValueHigh() const { return _volumeValueHigh; }
    void setVolumeValueHigh(double value) { _volumeValueHigh = value; }
    double getVolumeOpacityHigh() const { return _volumeOpacityHigh; }
    void setVolumeOpacityHigh(double opacity) { _volumeOpacityHigh = opacity; }

private:
    struct Table;

    TORVFile::CPtr _dataFile;
    RenderingType _renderingType;
    QString _colorScaleName;
    int _dataShrinkH;
    int _dataShrinkV;
    double _dataSmooth;
    QMap<double, int> _surfacePars;
    double _volumeValueLow;
    double _volumeOpacityLow;
    double _volumeValueHigh;
    double _volumeOpacityHigh;
};

/// Of the box round the volume. Metres.
class TORVLayerParameters3dOutline final : public TORVLayerParameters
{
public:
    using Ptr = boost::shared_ptr<TORVLayerParameters3dOutline>;
    using CPtr = boost::shared_ptr<const TORVLayerParameters3dOutline>;

    bool hasChanged(const TORVLayerParameters& other) const override;
    void printDebug() const override;

    double getSiteAltitude() const { return _siteAltitude; }
    void setSiteAltitude(double altitude) { _siteAltitude = altitude; }
    double getDataHeight() const { return _dataHeight; }
    void setDataHeight(double height) { _dataHeight = height; }
    double getTickInterval() const { return _tickInterval; }
    void setTickInterval(double interval) { _tickInterval = interval; }

private:
    struct Table;

    double _siteAltitude = 0.0;
    double _dataHeight = 0.0;
    double _tickInterval = 1000.0;
};

/// Of the flat product under the volume.
class TORVLayerParameters2d final : public TORVLayerParameters
{
public:
    using Ptr = boost::shared_ptr<TORVLayerParameters2d>;
    using CPtr = boost::shared_ptr<const TORVLayerParameters2d>;

    bool hasChanged(const TORVLayerParameters& other) const override;
    void printDebug() const override;

    const TORVFile::CPtr& getDataFile() const { return _dataFile; }
    void setDataFile(const TORVFile::CPtr& file) { _dataFile = file; }

private:
    struct Table;

    TORVFile::CPtr _dataFile;
};

/// Of the range rings.
class TORVLayerParametersRadarRings final : public TORVLayerParameters
{
public:
    using Ptr = boost::shared_ptr<TORVLayerParametersRadarRings>;
    using CPtr = boost::shared_ptr<const TORVLayerParametersRadarRings>;

    bool hasChanged(const TORVLayerParameters& other) const override;
    void printDebug() const override;

    const TORVCoordinate& getSiteLocation() const { return _siteLocation; }
    void setSiteLocation(const TORVCoordinate& location) { _siteLocation = location; }
    double getRange() const { return _range; } ///< metres, or thousandths of a nautical mile
    void setRange(double range) { _range = range; }
    bool isMetricUnits() const { return _metricUnits; }
    void setMetricUnits(bool metric) { _metricUnits = metric; }

private:
    struct Table;

    TORVCoordinate _siteLocation{0.0, 0.0};
    double _range = 0.0;
    bool _metricUnits = false;
};

/// Of the grid of meridians and parallels.
class TORVLayerParametersLatLonGrid final : public TORVLayerParameters
{
public:
    using Ptr = boost::shared_ptr<TORVLayerParametersLatLonGrid>;
    using CPtr = boost::shared_ptr<const TORVLayerParametersLatLonGrid>;

    bool hasChanged(const TORVLayerParameters& other) const override;
    void printDebug() const override;

    const TORVGeoProjection::CPtr& getGeoProjection() const { return _geoProjection; }
    void setGeoProjection(const TORVGeoProjection::CPtr& projection) { _geoProjection = projection; }
    double getRange() const { return _range; } ///< metres
    void setRange(double range) { _range = range; }

private:
    struct Table;

    TORVGeoProjection::CPtr _geoProjection;
    double _range = 0.0;
};

/// Of the landmarks. The terrain gives a landmark without an altitude its height.
class TORVLayerParametersGeoLabels final : public TORVLayerParameters
{
public:
    using Ptr = boost::shared_ptr<TORVLayerParametersGeoLabels>;
    using CPtr = boost::shared_ptr<const TORVLayerParametersGeoLabels>;

    bool hasChanged(const TORVLayerParameters& other) const override;
    void printDebug() const override;

    const boost::shared_ptr<const TORVLandmarkSet>& getLandmarkSet() const { return _landmarkSet; }
    void setLandmarkSet(const boost::shared_ptr<const TORVLandmarkSet>& set) { _landmarkSet = set; }
    const TORVGeoProjection::CPtr& getGeoProjection() const { return _geoProjection; }
    void setGeoProjection(const TORVGeoProjection::CPtr& projection) { _geoProjection = projection; }
    double getVerticalScale() const { return _verticalScale; }
    void setVerticalScale(double scale) { _verticalScale = scale; }
    const boost::shared_ptr<const TORVTerrainSet>& getTerrainSet() const { return _terrainSet; }
    void setTerrainSet(const boost::shared_ptr<const TORVTerrainSet>& set) { _terrainSet = set; }

private:
    struct Table;

    boost::shared_ptr<const TORVLandmarkSet> _landmarkSet;
    TORVGeoProjection::CPtr _geoProjection;
    double _verticalScale = 1.0;
    boost::shared_ptr<const TORVTerrainSet> _terrainSet;
};

/// Of the terrain.
class TORVLayerParametersTerrain final : public TORVLayerParameters
{
public:
    using Ptr = boost::shared_ptr<TORVLayerParametersTerrain>;
    using CPtr = boost::shared_ptr<const TORVLayerParametersTerrain>;

    bool hasChanged(const TORVLayerParameters& other) const override;
    void printDebug() const override;

    const boost::shared_ptr<const TORVTerrainSet>& getTerrainSet() const { return _terrainSet; }
    void setTerrainSet(const boost::shared_ptr<const TORVTerrainSet>& set) { _terrainSet = set; }

private:
    struct Table;

    boost::shared_ptr<const TORVTerrainSet> _terrainSet;
};
