#pragma once

#include "datalib/TORVDataFrame.h"
#include "gui/TORVToolDialogInterface.h"
#include "settings/TORVDisplayState.h"
#include "settings/TORVViewAngle.h"
#include "ui_TORVDoubleModeDialog.h"
#include "visualization/TORVCameraInteractorObserver.h"
#include "visualization/TORVVisualization.h"
#include "visualization/TORVVisualizationObserver.h"

#include <QDialog>

#include <vtkNew.h>

#include <memory>

class TORVBackgroundSettings;
class TORVDialogParentInterface;
class TORVRenderer;
class vtkGenericOpenGLRenderWindow;

/**
 * The extra window: a second scene beside the one of the main window, of the data that was on show when the window was
 * filled. It has a frame, settings, a camera and a visualization of its own, and shares no prop with the other scene.
 *
 * However it is closed, it lets go of its data, and `finished` tells so; `hideDialog` alone is silent.
 *
 * Thread: main thread only.
 * Ownership: the main window outlives this object. Of what `setData` is given nothing is kept but what frames share.
 */
class TORVDoubleModeDialog final : public QDialog,
                                   public Ui_TORVDoubleModeDialogClass,
                                   public TORVToolDialogInterface,
                                   public TORVVisualizationObserver,
                                   public TORVCameraInteractorObserver
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVDoubleModeDialog)

public:
    TORVDoubleModeDialog(QWidget* parent, TORVDialogParentInterface* window);
    ~TORVDoubleModeDialog() override;

    /// Copies what is to be shown; `showDialog` begins to build it. State and angle are not null. Without a volume the
    /// window is emptied.
    void setData(const TORVDataFrame::CPtr& frame, const TORVDisplayState::CPtr& state,
                 const TORVViewAngle::CPtr& angle);

    void showDialog() override;
    void hideDialog() override;
    bool dialogVisible() const override;
    void updateValues() override;

    /// The scene takes the colours of the night, or of the day; nothing is built anew.
    void toggleNightMode(bool night);

    /// Ends all work on the scene, waiting for the step that runs. The window must be filled anew after it.
    void abort();

    /// Whether the scene is being built.
    bool isGenerating() const;

    TORVRenderer* getRenderer() const { return _renderer.get(); }

    void visualizationFinished(TORVVisualization* visualization) override;
    boost::shared_ptr<const TORVGeneralSettings> getVisualizationGeneralSettings() override;
    boost::shared_ptr<const TORVDisplayState> getVisualizationDisplayState() override;
    void cameraReset(TORVCameraInteractor* camera) override;
    void cameraMoved(TORVCameraInteractor* camera) override;

public Q_SLOTS:
    void done(int result) override;

private:
    void initializeVTK();
    void copySettings(const TORVDisplayState& state);
    void copyView(const TORVViewAngle& angle);
    void applyView();
    void startVisualization();
    void closeVisualization();
    void putAway();
    bool letGo(const TORVVisualization* visualization);
    void showTitle();
    void storePosition() const;
    void restorePosition();

    TORVDialogParentInterface* const _window;
    vtkNew<vtkGenericOpenGLRenderWindow> _renderWindow;
    std::unique_ptr<TORVRenderer> _renderer;
    boost::shared_ptr<TORVGeneralSettings> _genSettings; // this and what follows: null while the window is empty
    std::unique_ptr<TORVBackgroundSettings> _backgroundSettings;
    TORVDisplayState::Ptr _displayState;
    TORVViewAngle::Ptr _viewAngle;
    TORVDataFrame::CPtr _dataFrame;
    TORVVisualization::Ptr _visualization;
    QVector<TORVVisualization::Ptr> _leaving; // still at work, for nobody
};
