#include "visualization/TORVLatLonGridElement.h"

TORVLatLonGridElement::TORVLatLonGridElement(TORVVisualGroup* parent, int id)
    : TORVLayerElement(parent, id, "TORVLatLonGridElement")
{
}

void TORVLatLonGridElement::rebuild(const std::atomic<bool>& abort)
{
    Q_UNUSED(abort)
    _prop = nullptr;
}
