#pragma once

#include "datalib/TORVDataFrame.h"
#include "gui/TORVDialogParentInterface.h"
#include "settings/TORVDisplayState.h"
#include "settings/TORVGeneralSettings.h"
#include "settings/TORVViewAngle.h"
#include "visualization/TORVColormap.h"

#include <vtkDataSet.h>

#include <boost/make_shared.hpp>

/// A main window without a window: tool windows are given what stands in its members.
class FakeDialogParent final : public TORVDialogParentInterface
{
public:
    boost::shared_ptr<const TORVColormap> getCurrentColorMap() const override { return colormap; }
    boost::shared_ptr<const TORVDataFrame> getCurrentDataFrame() const override { return frame; }
    boost::shared_ptr<TORVGeneralSettings> getCurrentGeneralSettings() const override { return settings; }
    boost::shared_ptr<TORVDisplayState> getCurrentDisplayState() const override { return state; }
    boost::shared_ptr<TORVViewAngle> getCurrentViewAngle() const override { return angle; }
    vtkSmartPointer<vtkDataSet> getCurrentVTK3DDataSet() const override { return dataSet; }
    TORVRenderer* getCurrentRenderer() const override { return renderer; }

    boost::shared_ptr<const TORVColormap> colormap = boost::make_shared<TORVColormap>();
    boost::shared_ptr<const TORVDataFrame> frame;
    boost::shared_ptr<TORVGeneralSettings> settings = boost::make_shared<TORVGeneralSettings>();
    boost::shared_ptr<TORVDisplayState> state = boost::make_shared<TORVDisplayState>();
    boost::shared_ptr<TORVViewAngle> angle = boost::make_shared<TORVViewAngle>();
    vtkSmartPointer<vtkDataSet> dataSet;
    TORVRenderer* renderer = nullptr;
};
