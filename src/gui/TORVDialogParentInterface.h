#pragma once

#include <boost/shared_ptr.hpp>

#include <vtkSmartPointer.h>

class TORVColormap;
class TORVDataFrame;
class TORVDisplayState;
class TORVGeneralSettings;
class TORVRenderer;
class TORVViewAngle;
class vtkDataSet;

/**
 * What tool windows ask of the main window. They hold nothing of it, but ask each time: what is shown may be another
 * thing the next moment.
 *
 * Thread: main thread only.
 * Ownership: results are shared, but for the renderer, which is the window's and outlives the tool windows.
 */
class TORVDialogParentInterface
{
public:
    virtual ~TORVDialogParentInterface() = default;

    /// Of the product on show; never null: an empty one where there is no product.
    virtual boost::shared_ptr<const TORVColormap> getCurrentColorMap() const = 0;

    /// The frame on show, with a volume; null when nothing is shown.
    virtual boost::shared_ptr<const TORVDataFrame> getCurrentDataFrame() const = 0;

    /// The window's own, with the lists of presets.
    virtual boost::shared_ptr<TORVGeneralSettings> getCurrentGeneralSettings() const = 0;

    /// What the scene is to show at this moment, and where its camera stands.
    virtual boost::shared_ptr<TORVDisplayState> getCurrentDisplayState() const = 0;
    virtual boost::shared_ptr<TORVViewAngle> getCurrentViewAngle() const = 0;

    /// The image of the volume that is drawn, raw values; null while it is being built and where there is none.
    virtual vtkSmartPointer<vtkDataSet> getCurrentVTK3DDataSet() const = 0;

    virtual TORVRenderer* getCurrentRenderer() const = 0;
};
