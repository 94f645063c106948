#pragma once

/**
 * How the echo of widespread precipitation changes with height: steady rain, the bright band where wet snow melts, snow
 * that weakens upwards. A wide beam smears the band: it gets thicker and weaker with distance.
 *
 * Thread: any thread.
 */
class TORVMeltingLayer final
{
public:
    TORVMeltingLayer() = delete;

    /// dB to add to the echo at the ground, at `z` km with freezing level and echo top as given (km); `blur` as in
    /// TORVFieldPoint.
    static float decibels(float z, float freezingLevel, float top, float blur);
};
