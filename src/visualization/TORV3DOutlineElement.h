#pragma once

#include "settings/TORVLayerParameters.h"
#include "visualization/TORVLayerElement.h"
#include "visualization/TORVSceneStyle.h"

#include <vtkActor.h>

/**
 * The box round the volume, with ticks of height on its four upright edges. Its own coordinates are a unit box, from
 * -0.5 to 0.5 in x and y and from 0 to 1 in z; whoever shows it scales and places it.
 *
 * Ticks stand at the whole multiples of the interval between the bottom and the top of the data. Data lower than one
 * interval have none, and neither have data so high that nobody could count them.
 */
class TORV3DOutlineElement final : public TORVLayerElement<TORVLayerParameters3dOutline>
{
public:
    TORV3DOutlineElement(TORVVisualGroup* parent, int id);

    void invalidate() override;
    void restyle() override;

protected:
    void rebuild(const std::atomic<bool>& abort) override;

private:
    struct Style
    {
        TORVSceneStyle::Color lineColor;
        double lineWidth; // pixels
        TORVSceneStyle::Color tickColor;
        double tickWidth;
    };
    void createVTK();
    void loadStyle(bool night);
    void applyStyle();

    Style _style{};
    vtkSmartPointer<vtkActor> _box;
    vtkSmartPointer<vtkActor> _ticks;
};
