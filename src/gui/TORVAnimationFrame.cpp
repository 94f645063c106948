#include "gui/TORVAnimationFrame.h"

#include "datalib/TORVDataFrame.h"
#include "visualization/TORVVisualization.h"

#include <cassert>

TORVAnimationFrame::TORVAnimationFrame(const TORVDataFrame::Ptr& dataFrame, const TORVVisualization::Ptr& visualization)
    : _dataFrame(dataFrame), _visualization(visualization)
{
    assert(_dataFrame->getData3d());
    assert(_visualization);
    const TORVFile::CPtr file = _dataFrame->getData3d()->getFile();
    _site = file->getSite();
    _time = file->getDataTime();
}

TORVAnimationFrame::~TORVAnimationFrame() = default;
