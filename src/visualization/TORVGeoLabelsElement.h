#pragma once

#include "settings/TORVLayerParameters.h"
#include "visualization/TORVLayerElement.h"

/**
 * Landmarks with their names.
 *
 * So far it keeps its parameters and draws nothing.
 */
class TORVGeoLabelsElement final : public TORVLayerElement<TORVLayerParametersGeoLabels>
{
public:
    TORVGeoLabelsElement(TORVVisualGroup* parent, int id);

protected:
    void rebuild(const std::atomic<bool>& abort) override;
};
