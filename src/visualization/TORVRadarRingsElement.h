#pragma once

#include "settings/TORVLayerParameters.h"
#include "visualization/TORVLayerElement.h"

/**
 * Rings of equal range round the radar.
 *
 * So far it keeps its parameters and draws nothing.
 */
class TORVRadarRingsElement final : public TORVLayerElement<TORVLayerParametersRadarRings>
{
public:
    TORVRadarRingsElement(TORVVisualGroup* parent, int id);

protected:
    void rebuild(const std::atomic<bool>& abort) override;
};
