#include "visualization/TORV3DOutlineElement.h"

#include "utils/TORVDisplayMode.h"

#include <vtkAssembly.h>
#include <vtkCellArray.h>
#include <vtkCubeSource.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>

#include <cassert>
#include <cmath>
#include <vector>

namespace
{

constexpr double Edge = 0.5;
constexpr double TickEnd = 0.485;
constexpr double MostTicks = 1000.0;
constexpr TORVSceneStyle::Color Grey = {0.3, 0.3, 0.3};
constexpr double ThinnestLine = 0.5;
constexpr double ThickestLine = 20.0;

// In the unit box.
std::vector<double> tickHeights(double low, double height, double interval)
{
    std::vector<double> heights;
    const bool isLevel = low + interval > low; // neither is so large that the other is lost in it
    if (!isLevel || !(height >= interval) || !(height / interval <= MostTicks)) {
        return heights;
    }
    const double first = std::ceil(low / interval);
    const int count = static_cast<int>(std::floor((low + height) / interval) - first) + 1;
    for (int i = 0; i < count; ++i) {
        heights.push_back(((first + i) * interval - low) / height);
    }
    return heights;
}

void addLine(vtkPolyData* lines, const double* from, const double* to)
{
    const vtkIdType ends[] = {lines->GetPoints()->InsertNextPoint(from), lines->GetPoints()->InsertNextPoint(to)};
    lines->GetLines()->InsertNextCell(2, ends);
}

vtkSmartPointer<vtkPolyData> makeTicks(const std::vector<double>& heights)
{
    auto lines = vtkSmartPointer<vtkPolyData>::New();
    vtkNew<vtkPoints> points;
    vtkNew<vtkCellArray> cells;
    lines->SetPoints(points);
    lines->SetLines(cells);
    for (const double z : heights) {
        for (const double x : {-1.0, 1.0}) {
            for (const double y : {-1.0, 1.0}) {
                const double corner[] = {x * Edge, y * Edge, z};
                const double alongX[] = {x * TickEnd, y * Edge, z};
                const double alongY[] = {x * Edge, y * TickEnd, z};
                addLine(lines, corner, alongX);
                addLine(lines, corner, alongY);
            }
        }
    }
    return lines;
}

vtkSmartPointer<vtkActor> makeActor(vtkPolyData* geometry)
{
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputDataObject(geometry);
    auto actor = vtkSmartPointer<vtkActor>::New();
    actor->SetMapper(mapper);
    vtkProperty* const property = actor->GetProperty();
    property->SetOpacity(1.0);
    property->SetBackfaceCulling(0);
    property->SetFrontfaceCulling(0);
    property->LightingOff();
    return actor;
}

} // namespace

TORV3DOutlineElement::TORV3DOutlineElement(TORVVisualGroup* parent, int id)
    : TORVLayerElement(parent, id, "TORV3DOutlineElement")
{
}

void TORV3DOutlineElement::rebuild(const std::atomic<bool>& abort)
{
    Q_UNUSED(abort)
    createVTK();
}

void TORV3DOutlineElement::invalidate()
{
    TORVLayerElement::invalidate();
    _box = nullptr;
    _ticks = nullptr;
}

void TORV3DOutlineElement::restyle()
{
    if (_box) {
        loadStyle(TORVDisplayMode::isNight());
        applyStyle();
    }
}

void TORV3DOutlineElement::createVTK()
{
    assert(_params);
    loadStyle(TORVDisplayMode::isNight());
    vtkNew<vtkCubeSource> cube;
    cube->SetBounds(-Edge, Edge, -Edge, Edge, 0.0, 1.0);
    cube->Update();
    _box = makeActor(cube->GetOutput());
    _box->GetProperty()->SetRepresentationToWireframe();
    _ticks = makeActor(
        makeTicks(tickHeights(_params->getSiteAltitude(), _params->getDataHeight(), _params->getTickInterval())));
    applyStyle();
    vtkNew<vtkAssembly> assembly;
    assembly->AddPart(_box);
    assembly->AddPart(_ticks);
    _prop = assembly;
}

void TORV3DOutlineElement::loadStyle(bool night)
{
    const TORVSceneStyle file(QStringLiteral("OUTLINE3D"), night);
    _style = {file.color("line/color", Grey), file.number("line/width", 2.0, ThinnestLine, ThickestLine),
              file.color("tick/color", Grey), file.number("tick/width", 1.0, ThinnestLine, ThickestLine)};
}

void TORV3DOutlineElement::applyStyle()
{
    _box->GetProperty()->SetColor(_style.lineColor.data());
    _box->GetProperty()->SetLineWidth(static_cast<float>(_style.lineWidth));
    _ticks->GetProperty()->SetColor(_style.tickColor.data());
    _ticks->GetProperty()->SetLineWidth(static_cast<float>(_style.tickWidth));
}
