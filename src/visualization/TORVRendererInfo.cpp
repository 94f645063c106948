// Legend and colour scale of a renderer.

#include "datalib/TORVDataFrame.h"
#include "settings/TORVGeneralSettings.h"
#include "settings/TORVProductSettings.h"
#include "utils/TORVLog.h"
#include "visualization/TORVColorBarActor.h"
#include "visualization/TORVColormap.h"
#include "visualization/TORVRenderer.h"
#include "visualization/TORVSceneFont.h"

#include <vtkLegendBoxActor.h>
#include <vtkProperty2D.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkTextProperty.h>

#include <algorithm>
#include <cassert>

namespace
{

// The strip of the colour scale, in fractions of the window; its width is what its texts need.
constexpr double StripLeft = 0.01;
constexpr double StripBottom = 0.59;
constexpr double StripLeastRight = 0.05;
constexpr double StripMostRight = 0.5;
constexpr double StripTop = 0.99;

// The bar within the strip.
constexpr double BarLeft = 0.1;
constexpr double BarBottom = 0.05;
constexpr double BarWidth = 0.8;
constexpr double BarHeight = 0.95;

constexpr int LegendFontSize = 12;

void show(vtkRenderer* renderer, vtkProp* prop, bool on)
{
    if (!prop) {
        return;
    }
    if (on) {
        renderer->AddViewProp(prop);
    } else {
        renderer->RemoveViewProp(prop);
    }
}

} // namespace

void TORVRenderer::setInfoData(const boost::shared_ptr<const TORVDataFrame>& dataFrame,
                               const boost::shared_ptr<const TORVGeneralSettings>& settings)
{
    assert(dataFrame);
    assert(dataFrame->getData3d());
    assert(settings);
    removeInfoData();
    makeLegend(dataFrame->getLegend(settings));
    makeColorBar(*dataFrame);
    showInfo();
}

void TORVRenderer::removeInfoData()
{
    show(_renderer, _legend, false);
    _colorRenderer->RemoveAllViewProps();
    _window->RemoveRenderer(_colorRenderer);
    _legend = nullptr;
    _colorBar = nullptr;
}

void TORVRenderer::makeLegend(const QStringList& lines)
{
    TORVLog* const log = TORVLog::Instance();
    if (lines.isEmpty()) {
        log->logDebug(QStringLiteral("No legend!"));
        return;
    }
    _legend = vtkSmartPointer<vtkLegendBoxActor>::New();
    TORVSceneFont::apply(_legend->GetEntryTextProperty(), LegendFontSize);
    _legend->GetEntryTextProperty()->SetColor(_style.legendText.data());
    _legend->GetProperty()->SetColor(0.6, 0.6, 0.6);
    _legend->GetProperty()->SetOpacity(0.0);
    _legend->GetPositionCoordinate()->SetCoordinateSystemToNormalizedViewport();
    _legend->SetPosition(0.01, 0.01);
    _legend->SetPosition2(0.35, 0.18);
    _legend->BorderOff();
    _legend->SetNumberOfEntries(lines.size());
    for (int number = 0; number < lines.size(); ++number) {
        _legend->SetEntryString(number, lines[number].toUtf8().constData());
        log->logDebug(QStringLiteral("Legend %1 %2").arg(number).arg(lines[number]));
    }
}

void TORVRenderer::makeColorBar(const TORVDataFrame& frame)
{
    const TORVFile& file = *frame.getData3d()->getFile();
    const TORVDataType type = file.getDataType();
    const TORVColormap colours(frame.getProductSettings()->getColorScaleName(), type, TORVColormap::DISPLAY_VALUES,
                               file.getRawType());
    const QString title = TORVColormap::getDataTypeLegendInfo(TORVColormap::codeOf(type, file.getRawType())).name;
    _colorBar = TORVColorBarActor::SafeDownCast(colours.makeBar(title, BarLeft, BarBottom, BarWidth, BarHeight));
    assert(_colorBar);
    _colorBar->SetTextColor(_style.legendText[0], _style.legendText[1], _style.legendText[2]);
    _colorRenderer->AddViewProp(_colorBar);
    _laidOutFor = {};
}

void TORVRenderer::showInfo()
{
    show(_renderer, _legend, _isLegendOn);
    const bool isScaleSeen = _colorBar && _isColorScaleOn;
    if (isScaleSeen && !_window->HasRenderer(_colorRenderer)) {
        _window->AddRenderer(_colorRenderer);
    }
    if (!isScaleSeen) {
        _window->RemoveRenderer(_colorRenderer);
    }
}

// The scale's texts have fixed sizes, the strip grows with them; on a narrow window it stops at the middle.
void TORVRenderer::layOutColorScale()
{
    if (!_colorBar || !_window->HasRenderer(_colorRenderer)) {
        return;
    }
    const int* const size = _window->GetSize();
    const std::array<int, 3> now = {size[0], size[1], _window->GetDPI()};
    if (now == _laidOutFor || size[0] <= 0) {
        return;
    }
    _laidOutFor = now;
    const double width = _colorBar->GetNeededWidth(now[2]) / BarWidth / size[0];
    const double right = std::clamp(StripLeft + width, StripLeastRight, StripMostRight);
    _colorRenderer->SetViewport(StripLeft, StripBottom, right, StripTop);
}
