#include "radarsim/TORVDemoTables.h"

const std::vector<TORVDemoTables::Product>& TORVDemoTables::products()
{
    // The shells of reflectivity and rain let the core be seen through a veil. Velocity is a volume: surfaces of one
    // sign only would hide the other.
    static const std::vector<Product> products = {
        {"PRODUCT CAPPI Z", "surface", {{20, 18}, {35, 32}, {50, 100}}, 10, 0.3, 60, 25},
        {"PRODUCT CAPPI V", "volume", {{-20, 40}, {-10, 15}, {10, 15}, {20, 40}}, -25, 6, 25, 6},
        {"PRODUCT CAPPI W", "surface", {{3, 12}, {5, 35}, {8, 100}}, 2, 0.3, 10, 25},
        {"PRODUCT CAPPI R", "surface", {{1, 15}, {10, 35}, {50, 100}}, 0.5, 0.3, 100, 30},
    };
    return products;
}

const std::vector<TORVDemoTables::DisplayState>& TORVDemoTables::displayStates()
{
    using Layer = TORVDisplayLayer;
    static const std::vector<DisplayState> states = {
        {"Surfaces", {Layer::LAYER_3DTERRAIN}},
        {"With terrain", {}},
        {"Plain",
         {Layer::LAYER_3DOUTLINE, Layer::LAYER_2DPRODUCT, Layer::LAYER_3DTERRAIN, Layer::LAYER_LATLONGRID,
          Layer::LAYER_GEOLABELS}},
    };
    return states;
}

// From the sides the box fills the width of the picture; the eye is 19 degrees above the ground.
const std::vector<TORVDemoTables::ViewAngle>& TORVDemoTables::viewAngles()
{
    static const std::vector<ViewAngle> angles = {
        {"From south-east", {270000, -270000, 142000}, {-270000, 270000, -132000}},
        {"From south-west", {-270000, -270000, 142000}, {270000, 270000, -132000}},
        {"From north-west", {-270000, 270000, 142000}, {270000, -270000, -132000}},
        {"From above", {0, 0, 560000}, {0, 1e-6, -1}},
        {"Low from the south", {0, -330000, 40000}, {0, 330000, -20000}},
    };
    return angles;
}

const std::vector<TORVDemoTables::StyleColor>& TORVDemoTables::styleColors()
{
    static const std::vector<StyleColor> styles = {
        {"RENDERER", "background/color", {.212, .267, .310}, {.055, .051, .047}},
        {"RENDERER", "light/color", {.65, .63, .58}, {.55, .52, .46}},
        {"RENDERER", "ambient/color", {.55, .60, .65}, {.30, .29, .27}},
        {"RENDERER", "site/marker/color", {.52, .54, .55}, {.42, .38, .31}},
        {"RENDERER", "colorscale/background/color", {.165, .208, .243}, {.094, .082, .071}},
        {"RENDERER", "legend/text/color", {.894, .918, .933}, {.804, .745, .643}},
        {"OUTLINE3D", "line/color", {.443, .502, .545}, {.310, .282, .247}},
        {"OUTLINE3D", "tick/color", {.604, .655, .698}, {.455, .416, .357}},
        {"RADARRINGS", "line/color", {.392, .451, .498}, {.290, .267, .235}},
        {"RADARRINGS", "label/color", {.690, .737, .773}, {.522, .478, .412}},
        {"LATLONGRID", "line/color", {.298, .353, .400}, {.200, .184, .165}},
        {"LATLONGRID", "label/color", {.651, .702, .741}, {.522, .478, .412}},
        {"COMPASS", "compass/color", {.725, .773, .808}, {.549, .506, .439}},
        {"CURSORTOOL", "line/selected/color", {.941, .953, .961}, {.886, .827, .706}},
        {"CURSORTOOL", "line/unselected/color", {.788, .831, .863}, {.725, .671, .576}},
        {"CURSORTOOL", "home/marker/color", {.45, .62, .72}, {.60, .42, .22}},
        {"CURSORTOOL", "home/label/color", {.812, .890, .933}, {.831, .627, .376}},
        {"TERRAIN3D", "tint", {.58, .545, .575}, {.36, .335, .34}},
    };
    return styles;
}

const std::vector<TORVDemoTables::StyleNumber>& TORVDemoTables::styleNumbers()
{
    static const std::vector<StyleNumber> styles = {
        {"RENDERER", "site/marker/radius", 1400, 1400},
        {"OUTLINE3D", "line/width", 1, 1},
        {"OUTLINE3D", "tick/width", 1, 1},
        {"RADARRINGS", "line/width", 1, 1},
        {"RADARRINGS", "label/size", 5000, 5000},
        {"LATLONGRID", "line/width", 1, 1},
        {"LATLONGRID", "line/segments", 64, 64},
        {"LATLONGRID", "label/size", 5000, 5000},
        {"COMPASS", "compass/opacity/highlighted", 1.0, 1.0},
        {"COMPASS", "compass/opacity/nonhighlighted", .85, .85},
        {"CURSORTOOL", "line/selected/width", 1.5, 1.5},
        {"CURSORTOOL", "line/unselected/width", 1, 1},
        {"CURSORTOOL", "marker/radius", 2200, 2200},
        {"CURSORTOOL", "home/label/fontsize", 12, 12},
    };
    return styles;
}

const double (&TORVDemoTables::landmarkColor(TORVPlace::Kind kind))[3]
{
    static const double colors[][3] = {{.886, .847, .776}, {.812, .878, .918}, {.965, .847, .651}};
    return colors[kind];
}
