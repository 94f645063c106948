#pragma once

/**
 * A point or a displacement in metres.
 *
 * Thread: a plain value, any thread.
 */
struct TORVPoint3D
{
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};
