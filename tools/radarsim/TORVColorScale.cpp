#include "radarsim/TORVColorScale.h"

#include <algorithm>
#include <cmath>

namespace
{

using Stops = std::vector<TORVColorScale::Stop>;

const Stops ReflectivityDefault = {{-30, 0x262F36}, {-10, 0x2F3B44}, {0, 0x364450},  {5, 0x3A4D5B},  {10, 0x3D576B},
                                   {15, 0x2F6D8A},  {20, 0x0A838C},  {25, 0x1F8C58}, {30, 0x35AF4F}, {35, 0x7BD550},
                                   {40, 0xFAD900},  {45, 0xFAAA28},  {50, 0xF77C10}, {55, 0xE93C1F}, {60, 0xBD0034},
                                   {65, 0xD434C0},  {70, 0xD38BD4},  {75, 0xF1D7F6}};

const Stops ReflectivitySafe = {{-30, 0x1B283B}, {-10, 0x233144}, {0, 0x2B4568},  {5, 0x325078},  {10, 0x3B5B85},
                                {15, 0x48668E},  {20, 0x5A7191},  {25, 0x6C7C92}, {30, 0x7F8792}, {35, 0x979284},
                                {40, 0xA99D7E},  {45, 0xBAA979},  {50, 0xCCB475}, {55, 0xDDC070}, {60, 0xEECB6A},
                                {65, 0xFFD764},  {70, 0xFFE6A4},  {75, 0xFEF5DA}};

const Stops VelocityDefault = {{-60, 0xC6F7F1}, {-40, 0x8DE8DB}, {-30, 0x59D6C2}, {-25, 0x3CC1AB}, {-20, 0x2FA994},
                               {-15, 0x28927F}, {-10, 0x267869}, {-5, 0x2B5E55},  {-1, 0x364846},  {1, 0x503F3C},
                               {5, 0x783B38},   {10, 0x9D3C37},  {15, 0xBF3F38},  {20, 0xDE4833},  {25, 0xEC672A},
                               {30, 0xF6892D},  {40, 0xFCB953},  {60, 0xFCEBB6}};

const Stops VelocitySafe = {{-60, 0xD2F0FF}, {-40, 0x9DDAFE}, {-30, 0x73C1F3}, {-25, 0x57ABE7}, {-20, 0x4293D8},
                            {-15, 0x377BC3}, {-10, 0x3465A5}, {-5, 0x38537C},  {-1, 0x3D4450},  {1, 0x4B4237},
                            {5, 0x694C2D},   {10, 0x855B2A},  {15, 0xA06D29},  {20, 0xBA802D},  {25, 0xD29636},
                            {30, 0xE3AD4B},  {40, 0xF0CD74},  {60, 0xF7ECBE}};

const Stops WidthDefault = {{0, 0x3C3C45}, {1, 0x48465B}, {2, 0x575078},  {3, 0x6F5792},  {4, 0x8F58A0}, {5, 0xB4589C},
                            {6, 0xD55E85}, {8, 0xF37C57}, {10, 0xF9A63E}, {12, 0xF2CE59}, {16, 0xF6F1C3}};

const Stops WidthSafe = {{0, 0x233955}, {1, 0x184B6B}, {2, 0x005F7D},  {3, 0x007488},  {4, 0x00898D}, {5, 0x009C8D},
                         {6, 0x3BB089}, {8, 0x87C687}, {10, 0xBDD793}, {12, 0xDFE3A7}, {16, 0xFEF2C6}};

const Stops RainDefault = {{0.1, 0x3A4D5B}, {0.3, 0x2F6D8A}, {0.6, 0x0A838C}, {1.25, 0x1F8C58},
                           {2.5, 0x35AF4F}, {5, 0x7BD550},   {10, 0xFAD900},  {25, 0xFAAA28},
                           {50, 0xF77C10},  {100, 0xE93C1F}, {200, 0xBD0034}, {400, 0xD434C0}};

const Stops RainSafe = {{0.1, 0x325078}, {0.3, 0x48668E}, {0.6, 0x5A7191}, {1.25, 0x6C7C92},
                        {2.5, 0x7F8792}, {5, 0x979284},   {10, 0xA99D7E},  {25, 0xBAA979},
                        {50, 0xCCB475},  {100, 0xDDC070}, {200, 0xEECB6A}, {400, 0xFFD764}};

const Stops WaterDefault = {{0.5, 0x3A4D5B}, {1, 0x2F6D8A},  {2, 0x0A838C},  {4, 0x1F8C58},  {7, 0x35AF4F},
                            {10, 0x7BD550},  {15, 0xFAD900}, {22, 0xFAAA28}, {30, 0xF77C10}, {40, 0xE93C1F},
                            {50, 0xBD0034},  {60, 0xD434C0}, {70, 0xD38BD4}};

const Stops WaterSafe = {{0.5, 0x325078}, {1, 0x48668E},  {2, 0x5A7191},  {4, 0x6C7C92},  {7, 0x7F8792},
                         {10, 0x979284},  {15, 0xA99D7E}, {22, 0xBAA979}, {30, 0xCCB475}, {40, 0xDDC070},
                         {50, 0xEECB6A},  {60, 0xFFD764}, {70, 0xFFE6A4}};

const std::vector<TORVColorScale> Scales = {
    {"Default", "dBZ", "3.0f", TORVColorGroup::REFLECTIVITY, 80, ReflectivityDefault},
    {"Colour-safe", "dBZ", "3.0f", TORVColorGroup::REFLECTIVITY, 80, ReflectivitySafe},
    {"Default", "m/s", "3.0f", TORVColorGroup::VELOCITY, 80, VelocityDefault},
    {"Colour-safe", "m/s", "3.0f", TORVColorGroup::VELOCITY, 80, VelocitySafe},
    {"Default", "m/s", "3.0f", TORVColorGroup::WIDTH, 20, WidthDefault},
    {"Colour-safe", "m/s", "3.0f", TORVColorGroup::WIDTH, 20, WidthSafe},
    {"Default", "mm/h", "g", TORVColorGroup::RAIN, 800, RainDefault},
    {"Colour-safe", "mm/h", "g", TORVColorGroup::RAIN, 800, RainSafe},
    {"Default", "kg/m2", "g", TORVColorGroup::WATER, 80, WaterDefault},
    {"Colour-safe", "kg/m2", "g", TORVColorGroup::WATER, 80, WaterSafe},
};

uint32_t blended(uint32_t a, uint32_t b, double weight)
{
    uint32_t color = 0;
    for (int shift = 16; shift >= 0; shift -= 8) {
        const double low = (a >> shift) & 255U;
        const double high = (b >> shift) & 255U;
        color |= static_cast<uint32_t>(std::lround(low + (high - low) * weight)) << shift;
    }
    return color;
}

} // namespace

const std::vector<TORVColorScale>& TORVColorScale::all()
{
    return Scales;
}

const TORVColorScale& TORVColorScale::defaultOf(int group)
{
    const auto isOf = [group](const TORVColorScale& scale) { return scale.group == group; };
    const auto found = std::find_if(Scales.begin(), Scales.end(), isOf);
    return found == Scales.end() ? Scales.front() : *found;
}

uint32_t TORVColorScale::colorAt(double value) const
{
    const auto isAbove = [](double wanted, const Stop& stop) { return wanted < stop.value; };
    const auto above = std::upper_bound(stops.begin(), stops.end(), value, isAbove);
    if (above == stops.begin()) {
        return stops.front().color;
    }
    if (above == stops.end()) {
        return stops.back().color;
    }
    const Stop& low = *(above - 1);
    return blended(low.color, above->color, (value - low.value) / (above->value - low.value));
}

const std::vector<TORVColorGroup>& TORVColorGroup::byDataType()
{
    static const std::vector<TORVColorGroup> groups = {
        {"", "", NONE},
        {"", "", NONE},
        {"Reflectivity", "Z", REFLECTIVITY},
        {"Radial velocity", "V", VELOCITY},
        {"Spectrum width", "W", WIDTH},
        {"Integrated water", "VIL", WATER},
        {"", "", NONE},
        {"", "", NONE},
        {"", "", NONE},
        {"Reflectivity", "Z", REFLECTIVITY},
        {"Radial velocity", "V", VELOCITY},
        {"Spectrum width", "W", WIDTH},
        {"", "", NONE},
        {"Rainfall rate", "R", RAIN},
    };
    return groups;
}
