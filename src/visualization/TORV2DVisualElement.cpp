#include "visualization/TORV2DVisualElement.h"

TORV2DVisualElement::TORV2DVisualElement(TORVVisualGroup* parent, int id)
    : TORVLayerElement(parent, id, "TORV2DVisualElement", "Creating new visualization.")
{
}

void TORV2DVisualElement::rebuild(const std::atomic<bool>& abort)
{
    Q_UNUSED(abort)
    _prop = nullptr;
}
