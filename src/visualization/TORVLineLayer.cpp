#include "visualization/TORVLineLayer.h"

#include <vtkCellArray.h>
#include <vtkPoints.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkVectorText.h>

namespace
{

constexpr TORVSceneStyle::Color Grey = {0.3, 0.3, 0.3};
constexpr double LineWidth = 1.0;
constexpr double ThinnestLine = 0.5;
constexpr double ThickestLine = 20.0;
constexpr double LabelSize_m = 10000.0;
constexpr double SmallestLabel_m = 1.0;
constexpr double LargestLabel_m = 1000000.0;

void setFlatLook(vtkProperty* property)
{
    property->SetOpacity(1.0);
    property->SetBackfaceCulling(0);
    property->SetFrontfaceCulling(0);
    property->LightingOff();
}

} // namespace

TORVLineLayer::Style TORVLineLayer::readStyle(const TORVSceneStyle& file)
{
    return {file.color("line/color", Grey), file.number("line/width", LineWidth, ThinnestLine, ThickestLine),
            file.color("label/color", Grey), file.number("label/size", LabelSize_m, SmallestLabel_m, LargestLabel_m)};
}

TORVLineLayer::TORVLineLayer(const Style& style) : _style(style), _prop(vtkSmartPointer<TORV2DLayerActor>::New())
{
    vtkNew<vtkPoints> points;
    vtkNew<vtkCellArray> lines;
    _geometry->SetPoints(points);
    _geometry->SetLines(lines);
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputDataObject(_geometry);
    _lines->SetMapper(mapper);
    setFlatLook(_lines->GetProperty());
    _prop->AddPart(_lines);
    setStyle(style);
}

void TORVLineLayer::addLine(const std::vector<Point>& points, bool closed)
{
    if (points.size() < 2) {
        return;
    }
    vtkPoints* const all = _geometry->GetPoints();
    vtkCellArray* const lines = _geometry->GetLines();
    const vtkIdType first = all->GetNumberOfPoints();
    lines->InsertNextCell(static_cast<int>(points.size()) + (closed ? 1 : 0));
    for (const Point& point : points) {
        lines->InsertCellPoint(all->InsertNextPoint(point[0], point[1], 0.0));
    }
    if (closed) {
        lines->InsertCellPoint(first);
    }
    all->Modified();
    _geometry->Modified();
}

void TORVLineLayer::addLabel(const QString& text, const Point& place, const Point& offset, Anchor anchor)
{
    vtkNew<vtkVectorText> letters;
    letters->SetText(text.toUtf8().constData());
    letters->Update();
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputDataObject(letters->GetOutput());
    auto label = vtkSmartPointer<TORVFlatLabel>::New();
    label->SetMapper(mapper);
    setFlatLook(label->GetProperty());
    label->GetProperty()->EdgeVisibilityOn(); // strokes of less than a pixel would fall apart
    const double width = anchor == RIGHT ? letters->GetOutput()->GetBounds()[1] : 0.0;
    label->SetPlace(place, {offset[0] - width, offset[1]});
    apply(label);
    _prop->AddPart(label);
    _labels.push_back(label);
}

void TORVLineLayer::setStyle(const Style& style)
{
    _style = style;
    vtkProperty* const property = _lines->GetProperty();
    property->SetColor(style.lineColor[0], style.lineColor[1], style.lineColor[2]);
    property->SetLineWidth(static_cast<float>(style.lineWidth));
    for (const vtkSmartPointer<TORVFlatLabel>& label : _labels) {
        apply(label);
    }
}

void TORVLineLayer::apply(TORVFlatLabel* label) const
{
    const TORVSceneStyle::Color& color = _style.labelColor;
    label->GetProperty()->SetColor(color[0], color[1], color[2]);
    label->GetProperty()->SetEdgeColor(color[0], color[1], color[2]);
    label->SetHeight(_style.labelSize);
}
