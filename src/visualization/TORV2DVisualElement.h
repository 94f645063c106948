#pragma once

#include "settings/TORVLayerParameters.h"
#include "visualization/TORVLayerElement.h"

/**
 * The flat product: a sheet of coloured cells at the height of the radar.
 *
 * So far it keeps its parameters and draws nothing.
 */
class TORV2DVisualElement final : public TORVLayerElement<TORVLayerParameters2d>
{
public:
    TORV2DVisualElement(TORVVisualGroup* parent, int id);

protected:
    void rebuild(const std::atomic<bool>& abort) override;
};
