#pragma once

#include <array>
#include <vector>

/**
 * The wind that storms live in: a sounding of speed and direction at a few heights, linear between them.
 *
 * Thread: immutable, any thread.
 */
class TORVWindProfile final
{
public:
    struct Level
    {
        float height;  ///< km
        float towards; ///< degrees clockwise from north that the wind blows to
        float speed;   ///< m/s
    };

    struct Wind
    {
        float u; ///< m/s, east
        float v; ///< m/s, north
    };

    /// `levels` rise in height; the first and the last go on below and above.
    explicit TORVWindProfile(const std::vector<Level>& levels);

    Wind at(float height) const;

private:
    static constexpr int StepsPerKm = 4;
    static constexpr int TableSize = 20 * StepsPerKm + 1;
    std::array<Wind, TableSize> _table{};
};
