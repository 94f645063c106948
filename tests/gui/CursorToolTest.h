#pragma once

#include "gui/FakeDialogParent.h"
#include "gui/TORVCursorToolDialog.h"
#include "support/OffscreenScene.h"
#include "utils/TORVDisplayMode.h"
#include "visualization/SceneTest.h"
#include "visualization/TORV3DFilters.h"
#include "visualization/TORVPointWidget.h"
#include "visualization/TORVPointWidgetObserver.h"
#include "visualization/TORVRenderer.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>

#include <vtkCaptionActor2D.h>
#include <vtkPropAssembly.h>
#include <vtkPropCollection.h>

#include <memory>

/**
 * A cursor tool beside a scene with a real 3-D cursor. The volume has 41 x 41 x 11 points, 5 km and 1 km apart, with
 * the radar in the middle at 60 N 25 E, 125 m above the sea, and 50 dBZ in the northern half below the level 6.
 *
 * Thread: test's thread.
 */
class CursorToolTest : public SceneTest
{
protected:
    class DragObserver final : public TORVPointWidgetObserver
    {
    public:
        explicit DragObserver(CursorToolTest* test) : _test(test) {}

        void pointWidgetUpdated(TORVPointWidget* widget, const TORVPoint3D& point) override
        {
            Q_UNUSED(widget)
            _test->dialog->newCursorPosition(point);
        }

    private:
        CursorToolTest* _test;
    };

    static constexpr const char* Noon = "260714120000";
    static constexpr double Elevation = 125.0;

    CursorToolTest() : SceneTest({{20.0, 100}})
    {
        add(Noon, grid(), echo);
        window.renderer = &renderer;
        window.settings->setVerticalScale(5.0);
    }

    ~CursorToolTest() override { TORVDisplayMode::setNight(false); }

    static TORVProductFields grid()
    {
        TORVProductFields fields;
        fields.siteName = "HALMERA";
        fields.xPoints = fields.yPoints = 41;
        fields.zPoints = 11;
        fields.xScale = fields.yScale = 500000;
        fields.zScale = 100000;
        fields.xRadar = fields.yRadar = 20000;
        return fields;
    }

    static unsigned int echo(int x, int y, int z)
    {
        Q_UNUSED(x)
        return y > 20 && z < 6 ? 164U : 0U;
    }

    /// What the main window has on show from now on; the tool isn't told.
    void put(const TORVDataFrame::Ptr& frame)
    {
        const std::atomic<bool> abort{false};
        window.frame = frame;
        window.dataSet = vtk_3D_data_create(frame->getData3d()->getFile(), 1, 1, 0.0, abort);
    }

    /// The first volume, as the main window shows it.
    void open()
    {
        put(frame(Noon));
        dialog->resetCursor();
    }

    void close()
    {
        window.frame = nullptr;
        window.dataSet = nullptr;
    }

    /// In kilometres from the radar and true metres above the sea.
    void point(double eastKm, double northKm, double altitude)
    {
        dialog->newCursorPosition({eastKm * 1000.0, northKm * 1000.0, altitude * window.settings->getVerticalScale()});
    }

    QLabel* label(const char* name) const { return dialog->findChild<QLabel*>(QLatin1String(name)); }
    QString text(const char* name) const { return label(name)->text(); }
    QPushButton* button(const char* name) const { return dialog->findChild<QPushButton*>(QLatin1String(name)); }
    QComboBox* homeCombo() const { return dialog->findChild<QComboBox*>(QStringLiteral("homeCombo")); }
    QString swatch() const { return button("colorButton")->styleSheet(); }
    TORVPointWidget* cursor() const { return renderer.getPointWidget(); }

    QString caption() const
    {
        vtkPropCollection* const parts = vtkPropAssembly::SafeDownCast(cursor()->getActor())->GetParts();
        return QString::fromUtf8(vtkCaptionActor2D::SafeDownCast(parts->GetItemAsObject(2))->GetCaption());
    }

    DragObserver observer{this};
    OffscreenScene scene;
    TORVRenderer renderer{scene.window(), nullptr, &observer, true};
    FakeDialogParent window;
    std::unique_ptr<TORVCursorToolDialog> dialog = std::make_unique<TORVCursorToolDialog>(nullptr, &window);
};
