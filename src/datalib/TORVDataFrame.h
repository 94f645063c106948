#pragma once

#include "datalib/TORVDataStore.h"
#include "utils/TORVCoordinate.h"
#include "utils/TORVGeoProjection.h"

#include <QString>
#include <QStringList>

#include <boost/shared_ptr.hpp>

class TORVGeneralSettings;
class TORVLandmarkSet;
class TORVProductSettings;
class TORVTerrainSet;

/**
 * Everything that one picture needs, chosen from the store: the volume of a requested site, product, configuration and
 * time, the flat file that goes best with it, terrain and landmarks of its area, its projection and how its product is
 * drawn. A frame only chooses; it reads no data.
 *
 * Setters change the request; `updateData3d` and then `updateDataRest` choose anew, but only what the request no longer
 * fits. What a frame has chosen stays good when the file has gone or the store has other directories.
 *
 * Ownership: shares all that it chose with the store, with its copies and with whoever asks.
 *
 * Thread: main thread only. What it chose may be used on other threads, as those classes tell.
 */
class TORVDataFrame final
{
public:
    using Ptr = boost::shared_ptr<TORVDataFrame>;
    using CPtr = boost::shared_ptr<const TORVDataFrame>;

    /// Nothing is chosen.
    explicit TORVDataFrame(TORVDataStore::Ptr dataStore);

    /// A copy that shares what `other` has chosen.
    explicit TORVDataFrame(const TORVDataFrame::CPtr& other);

    /**
     * Chooses at once. Without such a volume nothing is chosen, and the user is told in the history.
     * @param moment         the volume's key of time, `TORVFileLeaf::getTime`
     * @param product2d      as for `setDataParams2d`
     * @param timeWindow     seconds, the whole width of the window in which flat files are looked for
     * @param terrainFactor  half the side of the terrain area, in half diagonals of the volume
     */
    TORVDataFrame(TORVDataStore::Ptr dataStore, const QString& site, const QString& moment, const QString& product,
                  const QString& configuration, const QString& product2d, int timeWindow, double terrainFactor);

    ~TORVDataFrame();
    TORVDataFrame& operator=(const TORVDataFrame&) = delete;

    void setSite(const QString& site);
    void setMoment(const QString& moment, int timeWindow);
    void setDataParams3d(const QString& product, const QString& configuration);

    /// An empty name stands for the first product that the flat tree has for the present volume's site and time; it
    /// stays empty where there is none.
    void setDataParams2d(const QString& product2d);

    /// Metres, half the side of the area. Terrain that was chosen already stays as long as the radar does.
    void setDataParamsTerrain(double radiusM);

    /// @return whether there is a volume. Its product settings are loaded each time.
    bool updateData3d();

    /// Flat file, terrain and landmarks; there must be a volume. None of the three need be found.
    void updateDataRest();

    /// Chooses ground and landmarks anew, whatever is there; nothing without a volume. The ground is another one as
    /// soon as the terrain directory has forgotten its last set.
    void renewTerrain();

    /// Loads the product settings anew, into another object; there must be a volume.
    void updateProductSettings();

    /// "SITE: Tue 2026-07-14 12:00", for the label of the picture. The settings are not null.
    QString getDataId(const boost::shared_ptr<const TORVGeneralSettings>& settings) const;

    /// Quantity, time, size and place of the volume, a line each, or the one line that there is none.
    QStringList getLegend(const boost::shared_ptr<const TORVGeneralSettings>& settings) const;

    TORVDataStore::Ptr getDataStore() const { return _dataStore; }
    TORVFileLeaf::Ptr getData3d() const { return _activeData3d; } ///< null when there is none
    TORVFileLeaf::Ptr getData2d() const { return _activeData2d; } ///< null when there is none
    boost::shared_ptr<TORVTerrainSet> getTerrainSet() const { return _terrainSet; }
    boost::shared_ptr<TORVLandmarkSet> getLandmarkSet() const { return _landmarkSet; }
    QString getSite() const { return _site; } ///< the request, like the five that follow
    QString getMoment() const { return _moment; }
    int getTimeWindow() const { return _timeWindow; } ///< seconds
    QString getProduct() const { return _product; }
    QString getConfiguration() const { return _configuration; }
    QString getProduct2d() const { return _product2d; }
    TORVGeoProjection::CPtr getGeoProjection() const { return _geoProjection; }
    double getTerrainRadiusM() const { return _terrainRadiusM; }
    TORVCoordinate getAreaLowerLeft() const { return _areaLowerLeft; } ///< on whole degrees, like the other corner
    TORVCoordinate getAreaUpperRight() const { return _areaUpperRight; }
    boost::shared_ptr<const TORVProductSettings> getProductSettings() const { return _productSettings; }

private:
    TORVDataFrame(const TORVDataFrame&) = default;

    void resetFrame();
    bool fitsData3d() const;
    bool fitsData2d() const;
    bool fitsTerrain() const;
    QString productOrDefault(const QString& product2d) const;
    double halfDiagonal_m() const;
    void selectData2d();
    void selectArea();

    TORVDataStore::Ptr _dataStore;
    TORVFileLeaf::Ptr _activeData3d;
    TORVFileLeaf::Ptr _activeData2d;
    boost::shared_ptr<TORVTerrainSet> _terrainSet;
    boost::shared_ptr<TORVLandmarkSet> _landmarkSet;
    QString _site;
    QString _moment;
    int _timeWindow = 0; // seconds
    QString _product;
    QString _configuration;
    QString _product2d;
    TORVGeoProjection::CPtr _geoProjection;
    double _terrainRadiusM = 0.0;
    TORVCoordinate _areaLowerLeft{0.0, 0.0};
    TORVCoordinate _areaUpperRight{0.0, 0.0};
    boost::shared_ptr<const TORVProductSettings> _productSettings;
};
