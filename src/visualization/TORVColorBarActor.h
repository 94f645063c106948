#pragma once

#include <vtkNew.h>
#include <vtkScalarBarActor.h>
#include <vtkSmartPointer.h>

#include <string>
#include <vector>

class vtkPolyData;
class vtkPolyDataMapper2D;
class vtkTextActor;

/**
 * A legend that can be read: title over a ramp, numbers beside it. Bands between two seams have the same height
 * whatever their width in the unit, so that a scale of 0.1 to 800 can be read at both ends; the numbers stand at the
 * seams, every second, third, ... one where there is no room for all.
 *
 * The colours are those of the lookup table at the values of the seams and between them. Texts have fixed sizes, those
 * of `GetTitleTextProperty` and `GetLabelTextProperty`; a box that is too small clips them.
 *
 * Thread: main thread only.
 */
class TORVColorBarActor final : public vtkScalarBarActor
{
public:
    struct Seam
    {
        double value = 0.0;
        std::string label; ///< UTF-8
    };

    static TORVColorBarActor* New();
    // VTK's macro has no semicolon, which would make one statement of the two.
    // clang-format off
    vtkTypeMacro(TORVColorBarActor, vtkScalarBarActor)
    TORVColorBarActor(const TORVColorBarActor&) = delete;
    // clang-format on
    void operator=(const TORVColorBarActor&) = delete;

    /// Ascending, two at least: with fewer there is no ramp.
    void SetSeams(const std::vector<Seam>& seams);

    /// Of title, numbers and lines.
    void SetTextColor(double r, double g, double b);

    /// Pixels that the box of this actor must be wide for nothing to be clipped.
    int GetNeededWidth(int dpi = 72);

    int RenderOpaqueGeometry(vtkViewport* viewport) override;
    int RenderOverlay(vtkViewport* viewport) override;
    void ReleaseGraphicsResources(vtkWindow* window) override;

    /// The ramp without its frame: x, y, width, height in pixels of the viewport.
    void GetScalarBarRect(int rect[4], vtkViewport* viewport) override;

protected:
    TORVColorBarActor();
    ~TORVColorBarActor() override;

private:
    struct Box
    {
        int x = 0;
        int y = 0;
        int width = 0;
        int height = 0;
    };

    void layOut(vtkViewport* viewport);
    bool isLaidOut(const Box& box, int dpi);
    Box boxIn(vtkViewport* viewport);
    Box rampIn(const Box& box, int dpi);
    void layOutRamp(const Box& ramp);
    void layOutLines(const Box& ramp, std::size_t stride);
    void layOutTexts(const Box& box, const Box& ramp, std::size_t stride);
    void addText(const char* text, vtkTextProperty* property, double x, double y, bool isTitle);
    std::size_t strideFor(const Box& ramp, int dpi);
    double valueAt(double part) const;

    std::vector<Seam> _seams;
    Box _laidOutBox;
    int _laidOutDpi = 0;
    vtkTimeStamp _laidOutTime;
    vtkNew<vtkPolyData> _ramp;
    vtkNew<vtkPolyData> _lines;
    vtkNew<vtkActor2D> _rampActor;
    vtkNew<vtkActor2D> _lineActor;
    std::vector<vtkSmartPointer<vtkTextActor>> _texts;
};
