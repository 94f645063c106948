#pragma once

#include <vtkOpenGLActor.h>

#include <array>

class vtkMatrix4x4;
class vtkViewport;

/**
 * A text that lies flat in a layer and reads from above with north up. It is as tall as it was told, in metres, but
 * never so small in a picture that it can't be read.
 *
 * Thread: made on any thread; main thread only as soon as it is in a window.
 */
class TORVFlatLabel final : public vtkOpenGLActor
{
public:
    /// Pixels at 72 dots an inch, the least height of a capital letter that is seen from above.
    static constexpr double LeastHeight_px = 9.0;

    static TORVFlatLabel* New();
    // VTK's macro has no semicolon, which would make one statement of the two.
    // clang-format off
    vtkTypeMacro(TORVFlatLabel, vtkOpenGLActor)
    TORVFlatLabel(const TORVFlatLabel&) = delete;
    // clang-format on
    void operator=(const TORVFlatLabel&) = delete;

    /// @param place   x and y in the layer, metres
    /// @param offset  of the foot of the text from there, in heights of a letter
    void SetPlace(const std::array<double, 2>& place, const std::array<double, 2>& offset);

    /// Of a capital letter, metres.
    void SetHeight(double height);

    /// Takes the size that the picture to come needs. @param layer  where the layer stands in the scene
    void Fit(vtkViewport* viewport, vtkMatrix4x4* layer);

protected:
    TORVFlatLabel();
    ~TORVFlatLabel() override;

private:
    void show(double height);

    std::array<double, 2> _place{};
    std::array<double, 2> _offset{};
    double _height = 1.0;
};
