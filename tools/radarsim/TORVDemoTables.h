#pragma once

#include "radarsim/TORVSiteInfo.h"
#include "settings/TORVDisplayLayer.h"

#include <utility>
#include <vector>

/**
 * The numbers of the demo installation's settings: how each product is shown at first sight, the presets, and the look
 * of the scene by day and by night. The ground is dark in both, everything that isn't echo stays grey and thin.
 *
 * Thread: constant, any thread.
 */
class TORVDemoTables final
{
public:
    TORVDemoTables() = delete;

    struct Product
    {
        const char* group;
        const char* rendering;
        std::vector<std::pair<double, int>> surfaces; ///< value in display units, opacity in percent
        double valueLow;
        double opacityLow; ///< percent
        double valueHigh;
        double opacityHigh;
    };

    struct StyleColor
    {
        const char* group; ///< without "_DAY" and "_NIGHT"
        const char* key;   ///< without "/r", "/g", "/b"
        double day[3];
        double night[3];
    };

    struct StyleNumber
    {
        const char* group;
        const char* key;
        double day;
        double night;
    };

    struct DisplayState
    {
        const char* name;
        std::vector<TORVDisplayLayer::Key> hidden;
    };

    /// Metres of the scene, of which the volume's box takes 240 km by 240 km, 75 km high at the vertical scale of 5.
    struct ViewAngle
    {
        const char* name;
        double position[3];
        double direction[3];
    };

    static const std::vector<Product>& products();

    /// The first is what the viewer starts with.
    static const std::vector<DisplayState>& displayStates();
    static const std::vector<ViewAngle>& viewAngles();

    static const std::vector<StyleColor>& styleColors();
    static const std::vector<StyleNumber>& styleNumbers();

    /// Red, green, blue, 0 to 1.
    static const double (&landmarkColor(TORVPlace::Kind kind))[3];
};
