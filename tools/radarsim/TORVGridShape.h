#pragma once

#include <cstddef>
#include <cstdint>

/**
 * The grid of points that a volume product is made on: the radar stands in the middle of the lowest level, which lies
 * at the height of its antenna. Whatever the number of points, the grid is about 240 km wide and 15 km high.
 *
 * Thread: a plain value, any thread.
 */
struct TORVGridShape
{
    static constexpr double Width_cm = 24000000.0;
    static constexpr double Height_cm = 1500000.0;

    int x = 240;
    int y = 240;
    int z = 20;

    int32_t xScale() const { return static_cast<int32_t>(Width_cm / x); } ///< cm

    int32_t yScale() const { return static_cast<int32_t>(Width_cm / y); }

    int32_t zScale() const { return static_cast<int32_t>(Height_cm / z); }

    /// Thousandths of a grid step from the first point: the middle.
    int32_t xRadar() const { return (x - 1) * 500; }

    int32_t yRadar() const { return (y - 1) * 500; }

    std::size_t planeSize() const { return static_cast<std::size_t>(x) * y; }

    std::size_t size() const { return planeSize() * z; }
};
