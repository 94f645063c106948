#include "visualization/TORV3DTerrainElement.h"

TORV3DTerrainElement::TORV3DTerrainElement(TORVVisualGroup* parent, int id)
    : TORVLayerElement(parent, id, "TORV3DTerrainElement")
{
}

void TORV3DTerrainElement::rebuild(const std::atomic<bool>& abort)
{
    Q_UNUSED(abort)
    _prop = nullptr;
}
