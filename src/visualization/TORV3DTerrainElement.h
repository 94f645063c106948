#pragma once

#include "settings/TORVLayerParameters.h"
#include "visualization/TORVLayerElement.h"

/**
 * The ground.
 *
 * So far it keeps its parameters and draws nothing.
 */
class TORV3DTerrainElement final : public TORVLayerElement<TORVLayerParametersTerrain>
{
public:
    TORV3DTerrainElement(TORVVisualGroup* parent, int id);

protected:
    void rebuild(const std::atomic<bool>& abort) override;
};
