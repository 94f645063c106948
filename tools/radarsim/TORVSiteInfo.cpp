#include "radarsim/TORVSiteInfo.h"

namespace
{

using Places = std::vector<TORVPlace>;

const Places Harjuvaara = {
    {"Merilahti", TORVPlace::TOWN, 60.06, 24.92, 5},       {"Kaislaranta", TORVPlace::TOWN, 60.22, 25.85, 3},
    {"Honkajärvi", TORVPlace::TOWN, 60.71, 24.33, 4},      {"Tuulisaari", TORVPlace::TOWN, 60.00, 23.43, 2},
    {"Louhikoski", TORVPlace::TOWN, 60.62, 25.74, 3},      {"Vaskiniemi", TORVPlace::TOWN, 60.42, 22.86, 4},
    {"Haapaselkä", TORVPlace::TOWN, 61.02, 25.10, 3},      {"Kuusiharju", TORVPlace::TOWN, 60.95, 23.55, 2},
    {"Merilahti LM", TORVPlace::AIRPORT, 60.16, 24.70, 4}, {"Vaskiniemi LM", TORVPlace::AIRPORT, 60.53, 23.05, 2},
    {"Harjuvaara", TORVPlace::RADAR, 60.27, 24.60, 5},
};

const Places Suovatunturi = {
    {"Revonsuo", TORVPlace::TOWN, 68.10, 27.05, 4},       {"Hillakylä", TORVPlace::TOWN, 68.72, 26.28, 3},
    {"Kaamasvaara", TORVPlace::TOWN, 68.66, 28.10, 2},    {"Jänkäjoki", TORVPlace::TOWN, 67.86, 28.62, 3},
    {"Poropää", TORVPlace::TOWN, 67.68, 26.55, 4},        {"Riekkolahti", TORVPlace::TOWN, 69.02, 28.55, 3},
    {"Naalivaara", TORVPlace::TOWN, 68.28, 25.35, 2},     {"Tunturikylä", TORVPlace::TOWN, 68.36, 29.15, 2},
    {"Revonsuo LM", TORVPlace::AIRPORT, 68.17, 27.30, 4}, {"Poropää LM", TORVPlace::AIRPORT, 67.72, 26.80, 3},
    {"Suovatunturi", TORVPlace::RADAR, 68.43, 27.40, 5},
};

const Places Korpiselanne = {
    {"Koivusalmi", TORVPlace::TOWN, 63.30, 28.40, 4},       {"Petäjäkoski", TORVPlace::TOWN, 62.75, 29.40, 3},
    {"Lehtovaara", TORVPlace::TOWN, 63.62, 29.35, 3},       {"Särkiniemi", TORVPlace::TOWN, 62.66, 27.95, 4},
    {"Koivusalmi LM", TORVPlace::AIRPORT, 63.22, 28.62, 3}, {"Korpiselanne", TORVPlace::RADAR, 63.10, 28.90, 5},
};

const Places Virtaluoto = {
    {"Hiekkasatama", TORVPlace::TOWN, 61.42, 22.10, 4},       {"Lokkiranta", TORVPlace::TOWN, 61.85, 21.95, 3},
    {"Peltomäki", TORVPlace::TOWN, 61.30, 23.20, 3},          {"Myllylahti", TORVPlace::TOWN, 60.95, 22.20, 2},
    {"Hiekkasatama LM", TORVPlace::AIRPORT, 61.50, 22.35, 3}, {"Virtaluoto", TORVPlace::RADAR, 61.40, 22.30, 5},
};

} // namespace

const std::vector<TORVSiteInfo>& TORVSiteInfo::all()
{
    static const std::vector<TORVSiteInfo> sites = {
        {"HAR", "HARJUVAARA", 60.27, 24.60, 55.0F, 27, TORVWeather::SUPERCELLS, 1000, 1, Harjuvaara},
        {"SUO", "SUOVATUNTURI", 68.43, 27.40, 330.0F, 22, TORVWeather::FRONTS, 1000, 0, Suovatunturi},
        {"KOR", "KORPISELANNE", 63.10, 28.90, 110.0F, 30, TORVWeather::SUPERCELLS, 1100, 2, Korpiselanne},
        {"VIR", "VIRTALUOTO", 61.40, 22.30, 40.0F, 18, TORVWeather::FRONTS, 900, 1, Virtaluoto},
    };
    return sites;
}
