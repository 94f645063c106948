#include "visualization/TORV3DOutlineElement.h"

TORV3DOutlineElement::TORV3DOutlineElement(TORVVisualGroup* parent, int id)
    : TORVLayerElement(parent, id, "TORV3DOutlineElement")
{
}

void TORV3DOutlineElement::rebuild(const std::atomic<bool>& abort)
{
    Q_UNUSED(abort)
    _prop = nullptr;
}
