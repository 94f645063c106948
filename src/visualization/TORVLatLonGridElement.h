#pragma once

#include "settings/TORVLayerParameters.h"
#include "visualization/TORVLayerElement.h"

/**
 * Meridians and parallels.
 *
 * So far it keeps its parameters and draws nothing.
 */
class TORVLatLonGridElement final : public TORVLayerElement<TORVLayerParametersLatLonGrid>
{
public:
    TORVLatLonGridElement(TORVVisualGroup* parent, int id);

protected:
    void rebuild(const std::atomic<bool>& abort) override;
};
