#pragma once

#include "settings/TORVLayerParameters.h"
#include "visualization/TORVLayerElement.h"

/**
 * The box round the volume, with its ticks of height.
 *
 * So far it keeps its parameters and draws nothing.
 */
class TORV3DOutlineElement final : public TORVLayerElement<TORVLayerParameters3dOutline>
{
public:
    TORV3DOutlineElement(TORVVisualGroup* parent, int id);

protected:
    void rebuild(const std::atomic<bool>& abort) override;
};
