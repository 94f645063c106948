#include "visualization/TORVRadarRingsElement.h"

TORVRadarRingsElement::TORVRadarRingsElement(TORVVisualGroup* parent, int id)
    : TORVLayerElement(parent, id, "TORVRadarRingsElement")
{
}

void TORVRadarRingsElement::rebuild(const std::atomic<bool>& abort)
{
    Q_UNUSED(abort)
    _prop = nullptr;
}
