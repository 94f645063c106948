#include "radarsim/TORVWeather.h"

#include "radarsim/TORVClearAir.h"
#include "radarsim/TORVHash.h"
#include "radarsim/TORVPulseCell.h"
#include "radarsim/TORVShapes.h"
#include "radarsim/TORVSquallLine.h"
#include "radarsim/TORVSupercell.h"
#include "radarsim/TORVWidespreadRain.h"

#include <cmath>

using namespace TORVShapes;

namespace
{

constexpr float RadiansPerDegree = 0.01745329F;

/// When storms of a kind are born, and how long they live, s. The phases are chosen so that the early evening hours,
/// which end a default archive, show each kind at its best.
struct Calendar
{
    int64_t period;
    int64_t phase;
    int64_t life;
};

constexpr Calendar SupercellCalendar{10800, 4200, 12600};
constexpr Calendar SquallLineCalendar{21600, 7700, 25200};
constexpr Calendar RainCalendar{21600, 12540, 36000};
constexpr Calendar CellCalendar{3900, 0, 3300};
constexpr int CellSlots = 26;
constexpr int CellGroups = 4;
constexpr int64_t GroupPeriod = 14400;

struct Birth
{
    uint32_t number; ///< which storm of its kind, since 1970
    float age;       ///< s
};

int64_t floorDivide(int64_t a, int64_t b)
{
    return a / b - (a % b < 0 ? 1 : 0);
}

/// The storms of a kind that live at `time`, the oldest first.
std::vector<Birth> alive(const Calendar& calendar, int64_t time)
{
    std::vector<Birth> births;
    const int64_t last = floorDivide(time - calendar.phase, calendar.period);
    const int64_t first = floorDivide(time - calendar.phase - calendar.life, calendar.period) + 1;
    for (int64_t number = first; number <= last; ++number) {
        const int64_t age = time - calendar.phase - number * calendar.period;
        births.push_back({static_cast<uint32_t>(number), static_cast<float>(age)});
    }
    return births;
}

/// A frame that moves straight on: `start` km before the radar at birth, passing `aside` km to the left of it.
TORVStormFrame movingFrame(float towardsDegrees, float start, float aside, float speed, float age)
{
    const TORVStormFrame path = TORVStormFrame::at(0.0F, 0.0F, towardsDegrees * RadiansPerDegree);
    const float ahead = -start + speed * age / 1000.0F;
    TORVStormFrame frame = path;
    frame.centreX = path.toX(ahead, aside);
    frame.centreY = path.toY(ahead, aside);
    return frame;
}

std::vector<TORVWindProfile::Level> sounding(TORVWeather::Scenario scenario)
{
    if (scenario == TORVWeather::SUPERCELLS) {
        return {{0.0F, 330.0F, 5.0F}, {0.5F, 355.0F, 8.0F},  {1.5F, 20.0F, 11.0F}, {3.0F, 42.0F, 15.0F},
                {6.0F, 60.0F, 22.0F}, {10.0F, 68.0F, 34.0F}, {13.0F, 72.0F, 28.0F}};
    }
    return {{0.0F, 20.0F, 5.0F},  {0.6F, 45.0F, 9.0F},  {1.5F, 66.0F, 13.0F},
            {3.0F, 82.0F, 17.0F}, {6.0F, 92.0F, 24.0F}, {10.0F, 98.0F, 33.0F}};
}

} // namespace

TORVWeather::TORVWeather(Scenario scenario, uint32_t seed)
    : _scenario(scenario), _seed(seed), _noise(TORVHash::mix(seed, 1)), _wind(sounding(scenario))
{
}

float TORVWeather::freezingLevel() const
{
    return _scenario == SUPERCELLS ? 3.3F : 2.45F;
}

TORVWindProfile::Wind TORVWeather::eddyAt(float x, float y, float z, float time) const
{
    constexpr float Strength = 2.2F;
    constexpr float EddySize = 7.0F;
    constexpr float EddyDepth = 2.5F;
    constexpr float EddyLife = 1500.0F;
    const float rise = z / EddyDepth + time / EddyLife;
    return {Strength * _noise.fractal(x / EddySize, y / EddySize, rise, 2),
            Strength * _noise.fractal(y / EddySize + 31.5F, x / EddySize, rise, 2)};
}

float TORVWeather::patchiness(TORVWindProfile::Wind eddy)
{
    return 0.45F + 0.5F * std::hypot(eddy.u, eddy.v);
}

TORVWeather::Fields TORVWeather::fieldsAt(int64_t time) const
{
    Fields fields;
    if (_scenario == SUPERCELLS) {
        addSupercells(fields, time);
        addSingleCells(fields, time);
    } else {
        addSquallLines(fields, time);
        addWidespreadRain(fields, time);
    }
    addClearAir(fields, time);
    return fields;
}

void TORVWeather::addSupercells(Fields& fields, int64_t time) const
{
    constexpr float Speed = 12.5F;
    for (const Birth& birth : alive(SupercellCalendar, time)) {
        const uint32_t hash = TORVHash::mix(_seed, 2, birth.number);
        const float side = (hash & 1U) != 0 ? 1.0F : -1.0F;
        const float aside = side * TORVHash::between(TORVHash::mix(hash, 1), 24.0F, 44.0F);
        const float towards = TORVHash::between(TORVHash::mix(hash, 2), 66.0F, 84.0F);
        const auto life = static_cast<float>(SupercellCalendar.life);
        TORVSupercell::State state;
        state.frame = movingFrame(towards, 78.0F, aside, Speed, birth.age);
        state.strength = step(0.0F, 2700.0F, birth.age) * step(life, life - 2400.0F, birth.age);
        state.rotation = step(1800.0F, 4200.0F, birth.age) * step(life - 600.0F, life - 3600.0F, birth.age);
        state.age = birth.age + 1000.0F * static_cast<float>(birth.number % 64);
        fields.push_back(std::make_unique<TORVSupercell>(state, _noise));
    }
}

void TORVWeather::addSingleCells(Fields& fields, int64_t time) const
{
    const TORVWindProfile::Wind steering = _wind.at(3.0F);
    for (uint32_t slot = 0; slot < CellSlots; ++slot) {
        const int64_t offset = TORVHash::mix(_seed, 3, slot) % static_cast<uint32_t>(CellCalendar.period);
        for (const Birth& birth : alive({CellCalendar.period, offset, CellCalendar.life}, time)) {
            const uint32_t hash = TORVHash::mix(_seed + slot, 4, birth.number);
            const auto born = static_cast<uint32_t>(floorDivide(time - static_cast<int64_t>(birth.age), GroupPeriod));
            const uint32_t group = TORVHash::mix(_seed + slot % CellGroups, 5, born);
            TORVPulseCell::State state;
            state.x = TORVHash::between(group, -105.0F, 75.0F) + 21.0F * TORVHash::normal(TORVHash::mix(hash, 1)) +
                      steering.u * birth.age / 1000.0F;
            state.y = TORVHash::between(TORVHash::mix(group, 1), -105.0F, 70.0F) +
                      21.0F * TORVHash::normal(TORVHash::mix(hash, 2)) + steering.v * birth.age / 1000.0F;
            state.life = birth.age / static_cast<float>(CellCalendar.life);
            state.peak = TORVHash::between(TORVHash::mix(hash, 3), 41.0F, 58.0F);
            state.radius = TORVHash::between(TORVHash::mix(hash, 4), 2.6F, 5.6F);
            state.height = 7.0F + 0.30F * (state.peak - 41.0F) + TORVHash::unit(TORVHash::mix(hash, 5));
            state.shearX = 0.10F * (_wind.at(8.0F).u - steering.u);
            state.shearY = 0.10F * (_wind.at(8.0F).v - steering.v);
            state.seed = hash;
            fields.push_back(std::make_unique<TORVPulseCell>(state, _noise));
        }
    }
}

void TORVWeather::addSquallLines(Fields& fields, int64_t time) const
{
    constexpr float Speed = 14.0F;
    for (const Birth& birth : alive(SquallLineCalendar, time)) {
        const uint32_t hash = TORVHash::mix(_seed, 6, birth.number);
        const auto life = static_cast<float>(SquallLineCalendar.life);
        TORVSquallLine::State state;
        state.frame = movingFrame(TORVHash::between(hash, 88.0F, 112.0F), 170.0F,
                                  TORVHash::between(TORVHash::mix(hash, 1), -25.0F, 25.0F), Speed, birth.age);
        state.halfLength = TORVHash::between(TORVHash::mix(hash, 2), 95.0F, 125.0F);
        state.strength = step(0.0F, 3600.0F, birth.age) * step(life, life - 3600.0F, birth.age);
        state.stratiform = step(0.0F, 9000.0F, birth.age);
        state.freezingLevel = freezingLevel();
        state.age = birth.age + 1000.0F * static_cast<float>(birth.number % 64);
        fields.push_back(std::make_unique<TORVSquallLine>(state, _noise));
    }
}

void TORVWeather::addWidespreadRain(Fields& fields, int64_t time) const
{
    constexpr float Speed = 11.0F;
    for (const Birth& birth : alive(RainCalendar, time)) {
        const uint32_t hash = TORVHash::mix(_seed, 7, birth.number);
        const auto life = static_cast<float>(RainCalendar.life);
        TORVWidespreadRain::State state;
        state.frame = movingFrame(TORVHash::between(hash, 70.0F, 100.0F), 200.0F,
                                  TORVHash::between(TORVHash::mix(hash, 1), -30.0F, 30.0F), Speed, birth.age);
        state.halfLength = TORVHash::between(TORVHash::mix(hash, 2), 78.0F, 100.0F);
        state.strength = step(0.0F, 3600.0F, birth.age) * step(life, life - 3600.0F, birth.age);
        state.freezingLevel = freezingLevel();
        state.age = birth.age + 1000.0F * static_cast<float>(birth.number % 64);
        fields.push_back(std::make_unique<TORVWidespreadRain>(state, _noise));
    }
}

void TORVWeather::addClearAir(Fields& fields, int64_t time) const
{
    constexpr int64_t Day = 86400;
    constexpr int64_t Hour = 3600;
    const TORVWindProfile::Wind wind = _wind.at(0.6F);
    // The pattern drifts through the noise, which repeats; counting from a period's start keeps the numbers small.
    const auto age = static_cast<float>(time - floorDivide(time, Day) * Day);
    TORVClearAir::State state;
    state.strength = step(4.0F * Hour, 11.0F * Hour, age) * step(23.0F * Hour, 16.0F * Hour, age);
    state.driftX = wind.u * age / 1000.0F;
    state.driftY = wind.v * age / 1000.0F;
    state.age = age;
    fields.push_back(std::make_unique<TORVClearAir>(state, _noise));
}
