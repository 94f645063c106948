#pragma once

/**
 * The few relations between what a radar measures and what people ask for. Thread: any thread.
 */
namespace TORVRadarEquations
{

/// The speed that a radar with this Nyquist velocity reports: `velocity` brought into [-nyquist, nyquist] by whole
/// turns of twice the Nyquist velocity.
float folded(float velocity, float nyquist);

/// mm/h from dBZ by Z = 200 R^1.6 (Marshall and Palmer), Z in mm^6/m^3.
float rainRate(float dbz);

/// kg/m^2 in a metre of air that reflects `dbz`: 3.44e-6 Z^(4/7) (Greene and Clark); hail, above 56 dBZ, counts as 56.
float liquidWater(float dbz);

} // namespace TORVRadarEquations
