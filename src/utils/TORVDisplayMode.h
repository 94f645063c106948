#pragma once

#include <atomic>

/**
 * Whether the application shows itself by day or by night. There is one mode for the whole process: windows and scenes
 * follow it. It is day until somebody says otherwise.
 *
 * Thread: any thread may ask. Who builds something over several steps asks once, so that it is all of one mode.
 */
class TORVDisplayMode final
{
public:
    TORVDisplayMode() = delete;

    static bool isNight() { return _isNight; }

    /// How often the mode has changed: who keeps what was made of it sees by this number whether it is stale.
    static int getChangeCount() { return _changeCount; }

    /// Nothing happens where it is the mode already.
    static void setNight(bool night);

private:
    static std::atomic<bool> _isNight;
    static std::atomic<int> _changeCount;
};
