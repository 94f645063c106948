#pragma once

#include "settings/TORVLayerParameters.h"
#include "visualization/TORVLayerElement.h"
#include "visualization/TORVLineLayer.h"

/**
 * Parallels and meridians at whole degrees around the radar, with a label at the end of each. They run through the
 * projection of the data, so that they are curves in the scene's plane: metres, the radar at the origin, z = 0, which
 * whoever places the layer puts at sea level.
 *
 * About eight parallels cross the circle that the parameters tell. A degree of longitude is the shorter the closer the
 * pole is, so meridians stand a whole number of times as many degrees apart, eight times at most. A grid that touches a
 * pole goes all round it.
 */
class TORVLatLonGridElement final : public TORVLayerElement<TORVLayerParametersLatLonGrid>
{
public:
    TORVLatLonGridElement(TORVVisualGroup* parent, int id);

    void invalidate() override;
    void restyle() override;

    /// "60N", "5S", "0".
    static QString getLatitudeLabel(double latitude);

    /// "25E", "71W", "0", "180"; of what lies up to a turn beyond the date line, too.
    static QString getLongitudeLabel(double longitude);

protected:
    void rebuild(const std::atomic<bool>& abort) override;

private:
    struct Direction;
    struct Grid;
    class Plane;

    void createVTK();
    void loadStyle(bool night);
    void addParallels(const Grid& grid, const Plane& plane);
    void addMeridians(const Grid& grid, const Plane& plane);
    void labelParallel(int lat, const Direction& line, const Grid& grid, const Plane& plane);
    void labelMeridian(int lon, const Direction& line, const Grid& grid);

    TORVLineLayer::Style _style{};
    int _segments = 1; // of a line
    TORVLineLayer::Ptr _lines;
};
