#pragma once

#include "visualization/TORV2DLayerActor.h"
#include "visualization/TORVFlatLabel.h"
#include "visualization/TORVSceneStyle.h"

#include <QString>

#include <vtkActor.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkSmartPointer.h>

#include <boost/shared_ptr.hpp>

#include <array>
#include <vector>

/**
 * Lines and labels that lie flat in the plane z = 0 of a layer: x east, y north, metres. Labels read from above with
 * north up.
 *
 * Thread: built on any one thread; once it is on screen, all on the main thread.
 */
class TORVLineLayer final
{
public:
    using Ptr = boost::shared_ptr<TORVLineLayer>;
    using Point = std::array<double, 2>;

    struct Style
    {
        TORVSceneStyle::Color lineColor;
        double lineWidth; ///< pixels
        TORVSceneStyle::Color labelColor;
        double labelSize; ///< metres, least height of a capital letter
    };

    /// Which part of a text stands at its place.
    enum Anchor
    {
        LEFT,
        RIGHT
    };

    /// Of a group of the style file; grey where it says nothing.
    static Style readStyle(const TORVSceneStyle& file);

    explicit TORVLineLayer(const Style& style);
    TORVLineLayer(const TORVLineLayer&) = delete;
    TORVLineLayer& operator=(const TORVLineLayer&) = delete;

    /// A closed line runs back to its first point. A line of less than two points is left out.
    void addLine(const std::vector<Point>& points, bool closed = false);

    /// @param offset  of the foot of the text from `place`, in heights of a letter; grows with the label
    void addLabel(const QString& text, const Point& place, const Point& offset, Anchor anchor = LEFT);

    /// Takes other colours, widths and sizes; lines and texts stay what they are.
    void setStyle(const Style& style);

    vtkSmartPointer<TORV2DLayerActor> getProp() const { return _prop; }
    vtkActor* getLines() const { return _lines; }

private:
    void apply(TORVFlatLabel* label) const;

    Style _style;
    vtkNew<vtkPolyData> _geometry;
    vtkNew<vtkActor> _lines;
    std::vector<vtkSmartPointer<TORVFlatLabel>> _labels;
    vtkSmartPointer<TORV2DLayerActor> _prop;
};
