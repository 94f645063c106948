#pragma once

#include "datalib/TORVDataFrame.h"
#include "settings/TORVLayerParameters.h"

#include <boost/shared_ptr.hpp>

class TORVGeneralSettings;
class TORVProductSettings;

/**
 * All that a scene is made from: the data of one frame and the parameters of every layer. What the frame had selected
 * is kept by value, since a frame that the animation uses again selects anew.
 *
 * Thread: main thread.
 */
class TORVVisualizationParameters
{
public:
    TORVVisualizationParameters();
    virtual ~TORVVisualizationParameters();
    TORVVisualizationParameters(const TORVVisualizationParameters&) = default;
    TORVVisualizationParameters& operator=(const TORVVisualizationParameters&) = default;

    /// Takes data and settings; the frame must have a volume file.
    void set(const boost::shared_ptr<const TORVDataFrame>& frame, const TORVGeneralSettings& general,
             const TORVProductSettings& product);

    /// The same data and the same parameters. The grid of meridians and the vertical scale are not looked at: the first
    /// follows from the data, the second stands among the parameters of the labels.
    bool isSame(const TORVVisualizationParameters& other) const;

    boost::shared_ptr<const TORVDataFrame> _dataFrame;
    TORVFileLeaf::Ptr _leaf3d;
    TORVFileLeaf::Ptr _leaf2d;
    boost::shared_ptr<const TORVTerrainSet> _terrainSet;
    boost::shared_ptr<const TORVLandmarkSet> _landmarkSet;

    TORVLayerParameters3d _pars3d;
    TORVLayerParameters3dOutline _pars3dOutline;
    TORVLayerParameters2d _pars2d;
    TORVLayerParametersRadarRings _parsRadarRings;
    TORVLayerParametersTerrain _parsTerrain;
    TORVLayerParametersLatLonGrid _parsLatLonGrid;
    TORVLayerParametersGeoLabels _parsGeoLabels;
    double _verticalScale = 1.0;

private:
    void setProduct(const TORVGeneralSettings& general, const TORVProductSettings& product);
    void setGeography(const TORVFile& file, bool metric);
};
