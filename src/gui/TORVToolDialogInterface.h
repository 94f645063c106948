#pragma once

/**
 * A tool window that stays open beside the scene.
 *
 * Thread: main thread only.
 */
class TORVToolDialogInterface
{
public:
    virtual ~TORVToolDialogInterface() = default;

    virtual void showDialog() = 0;
    virtual void hideDialog() = 0;
    virtual bool dialogVisible() const = 0;

    /// The data or the settings have changed.
    virtual void updateValues() = 0;
};
