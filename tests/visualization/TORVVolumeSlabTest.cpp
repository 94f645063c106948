#include "support/OffscreenScene.h"
#include "support/ProductFiles.h"
#include "support/SandboxedHome.h"
#include "visualization/TORV3DVisualElement.h"
#include "visualization/TORVColormap.h"
#include "visualization/TORVVisualGroup.h"
#include "visualization/TORVVolumePath.h"

#include <gtest/gtest.h>

#include <vtkAssembly.h>
#include <vtkCamera.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkScalarsToColors.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <string>

namespace
{

constexpr int Points = 21; // along x and y
constexpr int Levels = 9;
constexpr double Step = 1000.0;     // metres between columns
constexpr double LevelStep = 200.0; // between levels; opacities are those of levels drawn five times as tall
constexpr double Opacity = 0.05;    // of each step of 1000 metres

struct Look
{
    bool software;
    int shrink;
    double verticalScale;
    int axis; // that one looks along
};

std::string nameOf(const testing::TestParamInfo<Look>& info)
{
    const Look& look = info.param;
    return std::string(look.software ? "Processor" : "Card") + "Shrink" + std::to_string(look.shrink) + "Scale" +
           std::to_string(static_cast<int>(look.verticalScale)) + "Along" + std::string(1, "XYZ"[look.axis]);
}

// A slab of one value: its opacity over n steps follows from nothing but n and the opacity of one.
class TORVVolumeSlabTest : public testing::TestWithParam<Look>
{
protected:
    TORVVolumeSlabTest() { TORVVolumePath::setSoftware(GetParam().software); }
    ~TORVVolumeSlabTest() override { TORVVolumePath::setSoftware(true); }

    boost::shared_ptr<TORVLayerParameters3d> slab()
    {
        TORVProductFields fields = ProductFiles::small();
        fields.xPoints = fields.yPoints = Points;
        fields.zPoints = Levels;
        fields.xScale = fields.yScale = static_cast<int>(Step) * 100;
        fields.zScale = static_cast<int>(LevelStep) * 100;
        const auto raw = [](int, int, int) { return 144U; }; // 40 dBZ
        auto params = boost::make_shared<TORVLayerParameters3d>();
        params->setDataFile(TORVFile::openChecked(
            files.write(QStringLiteral("HAL260714120000.CAPZ"), fields, ProductFiles::data(fields, raw))));
        params->setRenderingType(TORVProductSettings::VOLUME);
        params->setDataShrinkH(GetParam().shrink);
        params->setDataShrinkV(1);
        params->setDataSmooth(0.0);
        params->setVolumeValueLow(0.0);
        params->setVolumeOpacityLow(0.0);
        params->setVolumeValueHigh(40.0);
        params->setVolumeOpacityHigh(100.0 * Opacity);
        return params;
    }

    // Metres between the first and the last sample. A scene that is drawn taller is not denser.
    double thickness() const
    {
        if (GetParam().axis == 2) {
            return (Levels - 1) * LevelStep * 5.0;
        }
        const int shrink = GetParam().shrink;
        return ((Points + shrink - 1) / shrink - 1) * shrink * Step;
    }

    void look(vtkRenderer* renderer, vtkProp* prop)
    {
        const double* const bounds = prop->GetBounds();
        vtkCamera* const camera = renderer->GetActiveCamera();
        double centre[3];
        double position[3];
        for (int i = 0; i < 3; ++i) {
            centre[i] = (bounds[2 * i] + bounds[2 * i + 1]) / 2.0;
            position[i] = centre[i];
        }
        position[GetParam().axis] += 200000.0;
        camera->ParallelProjectionOn();
        camera->SetFocalPoint(centre);
        camera->SetPosition(position);
        camera->SetViewUp(0.0, GetParam().axis == 2 ? 1.0 : 0.0, GetParam().axis == 2 ? 0.0 : 1.0);
        camera->SetParallelScale(GetParam().axis == 2 ? 5000.0 : 300.0);
        renderer->ResetCameraClippingRange();
    }

    SandboxedHome home;
    ProductFiles files;
    OffscreenScene scene{64, 64};
    std::atomic<bool> abort{false};
};

} // namespace

TEST_P(TORVVolumeSlabTest, IsAsOpaqueAsItsThicknessSays)
{
    TORVVisualGroup group(10);
    TORV3DVisualElement element(&group, 12);
    element.update(slab(), true, abort);
    const auto assembly = vtkAssembly::SafeDownCast(element.getProp());
    ASSERT_TRUE(assembly);
    assembly->SetScale(Step, Step, LevelStep * GetParam().verticalScale / 5.0);
    vtkNew<vtkRenderer> renderer;
    renderer->SetBackground(0.0, 0.0, 0.0);
    renderer->AddViewProp(assembly);
    scene.window()->AddRenderer(renderer);
    look(renderer, assembly);
    const QColor pixel = scene.picture().pixelColor(32, 32);

    double colour[3];
    element.getColormap()->getMap()->GetColor(144.0, colour);
    const double strongest = *std::max_element(colour, colour + 3);
    const double drawn = std::max({pixel.redF(), pixel.greenF(), pixel.blueF()});
    const double expected = 1.0 - std::pow(1.0 - Opacity, thickness() / Step);
    EXPECT_NEAR(drawn / strongest, expected, 0.04 * expected + 0.01);
}

INSTANTIATE_TEST_SUITE_P(Volumes, TORVVolumeSlabTest, testing::ValuesIn([] {
                             std::vector<Look> looks;
                             for (const bool software : {true, false}) {
                                 for (const int shrink : {1, 4}) {
                                     for (const double verticalScale : {1.0, 5.0, 20.0}) {
                                         for (const int axis : {0, 1, 2}) {
                                             looks.push_back({software, shrink, verticalScale, axis});
                                         }
                                     }
                                 }
                             }
                             return looks;
                         }()),
                         nameOf);
