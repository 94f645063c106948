#pragma once

#include "SceneTest.h"
#include "support/OffscreenScene.h"
#include "utils/TORVDisplayMode.h"
#include "visualization/TORVCameraInteractor.h"
#include "visualization/TORVPointWidgetObserver.h"
#include "visualization/TORVRenderer.h"

#include <QImage>

#include <vtkRenderer.h>

#include <cmath>

/// A block of echo in a volume, an off-screen window to show it in, and a view of it. Thread: test's thread.
class RendererTest : public SceneTest
{
protected:
    static constexpr QRgb DefaultBackground = 0xFF26404C; // 0.15, 0.25, 0.3

    class PointObserver final : public TORVPointWidgetObserver
    {
    public:
        void pointWidgetUpdated(TORVPointWidget* widget, const TORVPoint3D& point) override
        {
            Q_UNUSED(widget)
            Q_UNUSED(point)
        }
    };

    RendererTest() : SceneTest({{20.0, 18}, {35.0, 32}, {45.0, 100}})
    {
        writeColours();
        writeBlock();
    }

    ~RendererTest() override { TORVDisplayMode::setNight(false); }

    /// The finished scene of the block, with the echo alone.
    TORVVisualization::ItemPtr block()
    {
        showProductAlone();
        visualization.setSourceData(frame(Moment));
        visualization.updateVisualization(true);
        EXPECT_TRUE(waitForFinished(++runs));
        return visualization.getResultItem();
    }

    TORVVisualization::ItemPtr block(const QMap<double, int>& surfaces)
    {
        TORVProductSettings settings(QStringLiteral("CAPPI"), QStringLiteral("Z"), TORVDataType(2));
        settings.setSurfaces(surfaces);
        settings.save();
        return block();
    }

    /// From the south, 40 degrees down, the whole grid in view.
    static void lookAslant(TORVRenderer& renderer)
    {
        TORVCameraInteractor* const camera = renderer.getCameraInteractor();
        const double down = 40.0 * 3.14159265358979 / 180.0;
        const TORVPoint3D direction = {0.0, std::cos(down), -std::sin(down)};
        camera->setView({0.0, -330000.0 * direction.y, 25000.0 - 330000.0 * direction.z}, direction);
        camera->applyCamera(false);
    }

    static QRgb at(const QImage& picture, TORVRenderer& renderer, double x, double y, double z)
    {
        return picture.pixel(OffscreenScene::pixelOf(renderer.getRenderer(), x, y, z).toPoint());
    }

    void writeStyle()
    {
        home.write(QStringLiteral(".config/Halmera/TORV3DVisStyles.conf"),
                   "[RENDERER_DAY]\nbackground\\color\\r=0.2\nbackground\\color\\g=0.4\nbackground\\color\\b=0.6\n\n"
                   "[RENDERER_NIGHT]\nbackground\\color\\r=0\nbackground\\color\\g=0.2\nbackground\\color\\b=0\n"
                   "light\\color\\r=0.25\n");
    }

    static constexpr const char* Moment = "260714120000";

    PointObserver pointObserver;
    int runs = 0;
    TORVVisualization visualization{&observer};
    OffscreenScene scene;

private:
    // 41 x 41 x 11 points of 5 km and 1 km, the radar in the middle, a block of 50 dBZ 5 points wide round (30, 30, 5).
    void writeBlock()
    {
        TORVProductFields fields;
        fields.siteName = "HALMERA";
        fields.xPoints = fields.yPoints = 41;
        fields.zPoints = 11;
        fields.xScale = fields.yScale = 500000;
        fields.zScale = 100000;
        fields.xRadar = fields.yRadar = 20000;
        fields.groundElevation = fields.radarHeight = 0;
        add(Moment, fields, [](int x, int y, int z) {
            return std::abs(x - 30) <= 2 && std::abs(y - 30) <= 2 && std::abs(z - 5) <= 2 ? 164U : 0U;
        });
    }

    // Bands of teal from 20, green from 35 and orange from 45 dBZ.
    void writeColours()
    {
        QByteArray file = "[DATAMAPPING]\ndata\\size=3\ndata\\3\\data_index=1\ndata\\3\\name=Reflectivity\n\n"
                          "[COLORSCALE%201]\nname=Default\ncolorset_index=1\ndata_index=1\ndata_units=dBZ\n"
                          "points\\size=3\npoints\\1\\seam=20\npoints\\2\\seam=35\npoints\\3\\seam=45\n\n"
                          "[COLORSET%201]\npoints\\size=3\n";
        const int colours[3][3] = {{0x0A, 0x83, 0x8C}, {0x7B, 0xD5, 0x50}, {0xFA, 0xAA, 0x28}};
        for (int band = 0; band < 3; ++band) {
            for (int channel = 0; channel < 3; ++channel) {
                for (const char* const end : {"lower", "upper"}) {
                    file += "points\\" + QByteArray::number(band + 1) + '\\' + end + '\\' + "rgb"[channel] + '=' +
                            QByteArray::number(colours[band][channel]) + '\n';
                }
            }
        }
        home.write(QStringLiteral(".config/Halmera/TORV3DColors.conf"), file);
    }
};
