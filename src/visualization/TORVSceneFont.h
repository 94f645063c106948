#pragma once

class vtkTextProperty;

/**
 * The typeface of all texts in a scene: Open Sans Semibold, which stays legible when it is small and doesn't glow at
 * night; where it isn't installed, what VTK has compiled in as Arial.
 *
 * Thread: any thread; the property belongs to the caller.
 */
class TORVSceneFont final
{
public:
    TORVSceneFont() = delete;

    /// Upright and without effects. @param size  in pixels of the device at 72 dots an inch
    static void apply(vtkTextProperty* property, int size);
};
