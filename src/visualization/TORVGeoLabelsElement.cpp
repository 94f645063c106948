#include "visualization/TORVGeoLabelsElement.h"

TORVGeoLabelsElement::TORVGeoLabelsElement(TORVVisualGroup* parent, int id)
    : TORVLayerElement(parent, id, "TORVGeoLabelsElement")
{
}

void TORVGeoLabelsElement::rebuild(const std::atomic<bool>& abort)
{
    Q_UNUSED(abort)
    _prop = nullptr;
}
