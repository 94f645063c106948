#pragma once

#include "datalib/TORVFile.h"
#include "utils/TORVPoint3D.h"

/**
 * Where the grid of a product stands in the scene: metres, the radar at x = y = 0. Heights are true ones; whoever draws
 * them multiplies by the vertical scale. All layers take their places from here.
 *
 * Thread: a plain value, any thread.
 */
struct TORVSceneGrid
{
    TORVPoint3D step; ///< between two columns, rows, levels
    TORVPoint3D size; ///< from the first point to the last
    double radarX;    ///< from the first point
    double radarY;
    double elevation; ///< of the first level, above sea level

    explicit TORVSceneGrid(const TORVFile& file)
        : step{file.getXScale() * MetresPerCentimetre, file.getYScale() * MetresPerCentimetre,
               file.getZScale() * MetresPerCentimetre},
          size{file.getWidthM(), file.getLengthM(), file.getHeightM()},
          radarX(file.getXRadar() * StepsPerThousandth * step.x),
          radarY(file.getYRadar() * StepsPerThousandth * step.y), elevation(file.getRadarElevation())
    {
    }

private:
    static constexpr double MetresPerCentimetre = 0.01;
    static constexpr double StepsPerThousandth = 0.001;
};
