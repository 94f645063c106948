#pragma once

/// The air at one point. Speeds are what a storm adds to the wind around it.
struct TORVAirSample
{
    static constexpr float NoEcho = -99.0F;

    float dbz = NoEcho;
    float u = 0.0F;          ///< m/s, east
    float v = 0.0F;          ///< m/s, north
    float w = 0.0F;          ///< m/s, up, of the air (what falls in it falls on top of that)
    float turbulence = 0.0F; ///< m/s, deviation of the speed within a beam
};

/// Where a field is asked: kilometres east and north of the radar and above the sea, and how much of the height a beam
/// smears together there (deviation, km).
struct TORVFieldPoint
{
    float x;
    float y;
    float z;
    float blur;
};

/// A box that a storm never leaves, km; z from the sea up to `top`.
struct TORVFieldBounds
{
    float west;
    float east;
    float south;
    float north;
    float top;
};

/**
 * One storm, or another source of echo, frozen at one moment.
 *
 * Thread: immutable, any thread.
 */
class TORVStormField
{
public:
    virtual ~TORVStormField() = default;

    TORVStormField(const TORVStormField&) = delete;
    TORVStormField& operator=(const TORVStormField&) = delete;

    const TORVFieldBounds& bounds() const { return _bounds; }

    /// Joins what the storm does at `point` to `sample`: the stronger echo and turbulence count, speeds add up.
    virtual void addTo(TORVAirSample& sample, const TORVFieldPoint& point) const = 0;

protected:
    explicit TORVStormField(const TORVFieldBounds& bounds) : _bounds(bounds) {}

private:
    TORVFieldBounds _bounds;
};
