#pragma once

#include <vtkTextActor.h>

/**
 * A text with a line round its letters, so that it is read on any ground. Letters and line are one picture, made when
 * the text or its property changes and kept while it only moves.
 *
 * Thread: made on any thread; main thread only as soon as it is in a window.
 */
class TORVOutlinedText final : public vtkTextActor
{
public:
    static TORVOutlinedText* New();
    // VTK's macro has no semicolon, which would make one statement of the two.
    // clang-format off
    vtkTypeMacro(TORVOutlinedText, vtkTextActor)
    TORVOutlinedText(const TORVOutlinedText&) = delete;
    // clang-format on
    void operator=(const TORVOutlinedText&) = delete;

    /// Red, green, blue, 0 to 1.
    void SetOutlineColor(const double color[3]);

    void ShallowCopy(vtkProp* prop) override;

protected:
    TORVOutlinedText();
    ~TORVOutlinedText() override;

    bool RenderImage(vtkTextProperty* property, vtkViewport* viewport) override;
    bool GetImageBoundingBox(vtkTextProperty* property, vtkViewport* viewport, int bounds[4]) override;

private:
    double _outlineColor[3] = {0.0, 0.0, 0.0};
};
