#pragma once

/**
 * An X display for tests that draw: the one that the environment names, or an Xvfb that is started for this process and
 * ends with it.
 *
 * Thread: main thread, before the application object exists.
 */
class VirtualDisplay final
{
public:
    VirtualDisplay();
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

    /// False where there is neither a display nor an Xvfb.
    bool isThere() const;

private:
    void start();

    int _pid = 0; // of the Xvfb started here, 0 for none
};
