#pragma once

#include "settings/TORVLayerParameters.h"
#include "visualization/TORVLayerElement.h"
#include "visualization/TORVLineLayer.h"

/**
 * Four rings of equal range round the radar, with spokes at each 30 degrees and a label on each ring. Metres, the
 * radar at the origin, z = 0.
 */
class TORVRadarRingsElement final : public TORVLayerElement<TORVLayerParametersRadarRings>
{
public:
    TORVRadarRingsElement(TORVVisualGroup* parent, int id);

    void invalidate() override;
    void restyle() override;

    /// The position without its sign and with its hemisphere: "60.5N", "22.25W"; 0 is north and east.
    static QString getLatitudeLabel(double latitude);
    static QString getLongitudeLabel(double longitude);

    /// Whole kilometres or nautical miles: "120 km".
    /// @param range  metres, or thousandths of a nautical mile
    static QString getRangeLabel(double range, bool metric);

protected:
    void rebuild(const std::atomic<bool>& abort) override;

private:
    void createVTK();
    void loadStyle(bool night);
    void addRings(double radius);
    void addSpokes(double radius);
    void addLabels(double range, double radius);

    TORVLineLayer::Style _style{};
    TORVLineLayer::Ptr _lines;
};
