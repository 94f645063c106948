#pragma once

#include "datalib/TORVDataFrame.h"
#include "datalib/TORVDataStoreObserver.h"
#include "ui_MainWindow.h"
#include "visualization/TORVCameraInteractorObserver.h"
#include "visualization/TORVPointWidgetObserver.h"
#include "visualization/TORVVisualization.h"
#include "visualization/TORVVisualizationObserver.h"

#include <QMainWindow>
#include <QStringList>

#include <vtkNew.h>

#include <memory>

class DisplayMode;
class QLabel;
class TORVRenderer;
class vtkGenericOpenGLRenderWindow;

/**
 * The main window: the scene, what is shown in it, and what happened so far. It shows the newest volume of reflectivity
 * and follows its site as new ones arrive.
 *
 * Thread: main thread only.
 * Ownership: the widgets are the form's; renderer and render window are this object's.
 */
class TORVGUI final : public QMainWindow,
                      public Ui_MainWindow,
                      public TORVDataStoreObserver,
                      public TORVVisualizationObserver,
                      public TORVCameraInteractorObserver,
                      public TORVPointWidgetObserver
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVGUI)

public:
    TORVGUI();
    ~TORVGUI() override;

    void dataStoreNewDataAvailable3d(TORVDataStore* store, const QStringList& added,
                                     const QStringList& removed) override;
    void dataStoreNewDataAvailable2d(TORVDataStore* store, const QStringList& added,
                                     const QStringList& removed) override;

    void visualizationFinished(TORVVisualization* visualization) override;
    boost::shared_ptr<const TORVGeneralSettings> getVisualizationGeneralSettings() override;
    boost::shared_ptr<const TORVDisplayState> getVisualizationDisplayState() override;
    void cameraReset(TORVCameraInteractor* camera) override;
    void cameraMoved(TORVCameraInteractor* camera) override;
    void pointWidgetUpdated(TORVPointWidget* widget, const TORVPoint3D& point) override;

private Q_SLOTS:
    void historyAdd(QString const& text);
    void historyAdd(QStringList const& lines);
    void statusAdd(QString const& text, int timeout);
    void showFirst();
    void on_nightMode_toggled(bool on);
    void on_cursorTool_toggled(bool on);

private:
    void initDisplayMode();
    void fillBars();
    void connectLog();
    void initializeVTK();
    void openDirectories();
    bool followNewest();
    void visualize(const TORVFileLeaf& leaf);
    void resetView(const TORVFile& file);
    void placeCursor(const TORVDataFrame& frame);

    DisplayMode* _displayMode = nullptr;
    QLabel* _label_dataId = nullptr;
    QLabel* _surfaceKey = nullptr;
    vtkNew<vtkGenericOpenGLRenderWindow> _renderWindow;
    std::unique_ptr<TORVRenderer> _renderer;
    boost::shared_ptr<TORVGeneralSettings> _genSettings;
    boost::shared_ptr<TORVDisplayState> _displayState;
    TORVDataStore::Ptr _dataStore; // null without data paths
    TORVVisualization::Ptr _visualization;
    TORVDataFrame::CPtr _frame; // null before the first volume
    QString _shownSite;         // empty before the first picture
};
