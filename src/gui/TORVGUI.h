#pragma once

#include "datalib/TORVDataFrame.h"
#include "datalib/TORVDataStoreObserver.h"
#include "gui/TORVDialogParentInterface.h"
#include "gui/TORVSceneCache.h"
#include "settings/TORVViewAngle.h"
#include "ui_MainWindow.h"
#include "visualization/TORVCameraInteractorObserver.h"
#include "visualization/TORVPointWidgetObserver.h"
#include "visualization/TORVVisualization.h"
#include "visualization/TORVVisualizationObserver.h"

#include <QIcon>
#include <QMainWindow>
#include <QMutex>
#include <QPointer>
#include <QStringList>
#include <QVector>

#include <vtkNew.h>
#include <vtkTimerLog.h>

#include <memory>
#include <optional>
#include <vector>

class DisplayMode;
class QComboBox;
class QLabel;
class QProgressBar;
class QShortcut;
class QSplashScreen;
class QTimer;
class TORVAnimation;
class TORVCursorToolDialog;
class TORVDiskSpaceIndicator;
class TORVDoubleModeDialog;
class TORVGeneralSettingsDialog;
class TORVProductInformationDialog;
class TORVRenderer;
class TORVServiceCheck;
class TORVToolDialogInterface;
class vtkGenericOpenGLRenderWindow;

/**
 * The main window, and what everything in it turns round: it chooses the data, has scenes built of them and shows
 * these, follows new files, plays sequences, and keeps tool windows and settings in step.
 *
 *     combo boxes, new files --> updateLiveMode --> TORVAnimation::updateFrames --> updateData(frame)
 *     updateData, layers, presets, settings --> a run of the frame's own TORVVisualization, in the pending list
 *     visualizationFinished --> setActiveData --> TORVRenderer
 *
 * A frame that is shown again is run again, which builds only what has changed since. Of all runs the one that was
 * asked for last wins, whichever ends first; one whose frame has left the sequence is dropped.
 *
 * | source              | holds                                             |
 * |---------------------|---------------------------------------------------|
 * | TORVGUI             | construction, closing                             |
 * | TORVGUIData         | which data is shown                               |
 * | TORVGUILists        | what there is to choose from                      |
 * | TORVGUIResults      | runs and what they bring                          |
 * | TORVGUIAnimation    | playback                                          |
 * | TORVGUILayers       | layers                                            |
 * | TORVGUIPresets      | presets and the camera                            |
 * | TORVGUITools        | tool windows, settings that are applied, the look |
 * | TORVGUIStatus       | history, status bar, the service's state          |
 *
 * Thread: main thread only.
 * Ownership: widgets, dialogs and timers are children of the window; all else is held by the members.
 */
class TORVGUI final : public QMainWindow,
                      public Ui_MainWindow,
                      public TORVDialogParentInterface,
                      public TORVVisualizationObserver,
                      public TORVCameraInteractorObserver,
                      public TORVPointWidgetObserver,
                      public TORVDataStoreObserver
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVGUI)

public:
    TORVGUI();
    ~TORVGUI() override;

    boost::shared_ptr<const TORVColormap> getCurrentColorMap() const override;
    boost::shared_ptr<const TORVDataFrame> getCurrentDataFrame() const override;
    boost::shared_ptr<TORVGeneralSettings> getCurrentGeneralSettings() const override;
    boost::shared_ptr<TORVDisplayState> getCurrentDisplayState() const override;
    boost::shared_ptr<TORVViewAngle> getCurrentViewAngle() const override;
    vtkSmartPointer<vtkDataSet> getCurrentVTK3DDataSet() const override;
    TORVRenderer* getCurrentRenderer() const override;

    void visualizationFinished(TORVVisualization* visualization) override;
    boost::shared_ptr<const TORVGeneralSettings> getVisualizationGeneralSettings() override;
    boost::shared_ptr<const TORVDisplayState> getVisualizationDisplayState() override;

    void cameraReset(TORVCameraInteractor* camera) override;
    void cameraMoved(TORVCameraInteractor* camera) override;
    void pointWidgetUpdated(TORVPointWidget* widget, const TORVPoint3D& point) override;

    void dataStoreNewDataAvailable3d(TORVDataStore* store, const QStringList& added,
                                     const QStringList& removed) override;
    void dataStoreNewDataAvailable2d(TORVDataStore* store, const QStringList& added,
                                     const QStringList& removed) override;

    const TORVAnimation& getAnimation() const { return *_animation; }
    bool isPlaying() const { return _isPlaying; }

    /// Whether something is being built, played or started, and what could disturb it is disabled.
    bool isBusy() const;

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private Q_SLOTS:
    void initialize();
    void updateBusyState();
    void checkBackgroundStatus();
    void animTimerEvent();

    void historyAdd(QString const& text);
    void historyAdd(QStringList const& lines);
    void statusAdd(QString const& text, int seconds);

    void comboBoxLiveMode(int index);
    void comboBoxRadarSite(int index);
    void on_comboBox_3DProduct_activated(int index);
    void on_comboBox_2DProduct_activated(int index);
    void fileOpen3DData();
    void fileClose();

    void animPlay();
    void animPrev();
    void animNext();
    void animSliderChanged(int value);
    void animSliderReleased();
    void comboBoxAnimTimeSpan(int index);
    void comboBoxAnimInterval(int index);
    void comboBoxAnimSpeed(int index);
    void comboBoxAnimLoopMode(int index);
    void toggleAnimControls(bool on);
    void animVisibility(int state);

    void comboBoxDisplayState(int index);
    void comboBoxViewAngle(int index);
    void displayStatePresetItemApplied(int row);
    void viewAnglePresetItemApplied(int row);

    void applyProductInfo();
    void applySettings();
    void clearGeoCache();
    void on_settings_triggered();
    void on_productInfo_triggered();
    void on_cursorTool_triggered();
    void on_extraWindow_triggered();
    void on_fullScreen_triggered();
    void on_floatsHide_triggered();
    void on_help_triggered();
    void on_nightMode_triggered(bool on);

private:
    // A visualization that was told to build and has not finished.
    struct Run
    {
        TORVVisualization::Ptr visualization;
        int number = 0;      // of the request for its frame; the highest is what the user wants to see
        int changes = 0;     // of settings and display state before it was asked for
        bool isStep = false; // of the playback
    };

    struct LayerRow
    {
        int key;
        QPushButton* button;
        QPushButton* alpha;
        QSlider* opacity;
        void (TORVGUI::*toggle)(bool on);
        const char* debugWord;
    };

    // What a control is called in each of its two states.
    struct Face
    {
        QString name;
        QString text;
        QString toolTip;
    };

    struct Tool
    {
        QAction* action;
        QDialog* dialog;
        TORVToolDialogInterface* tool;
        void (TORVGUI::*show)();
        void (TORVGUI::*hide)();
    };

    static QString translate(const char* context, const char* text);

    void initDisplayMode();
    void showSplash();
    void raiseSplash();
    void fillBars();
    void fillToolBar();
    void fillStatusBar();
    void prepareDocks();
    void makeLayerRows();
    void loadState();
    void restoreWindow();
    void connectLog();
    void initializeVTK();
    void openDirectories();
    void createTools();
    void createTimers();
    void connectControls();
    void connectAnimationControls();
    void fitPanels();
    void saveState(const TORVViewAngle& view);
    void abortAll();
    void hideTools();

    TORVDataFrame::CPtr askedFrame() const;
    void toggleLiveMode(bool live);
    void markLiveMode();
    void updateAvailableSites();
    void updateAvailableProducts();
    void listLiveSites();
    void listLiveProducts();
    void listMatchingProducts();
    void dataInitialized();
    void updateLiveMode();
    void showLatest(const TORVFileLeaf::Ptr& leaf);
    void openArchive(const TORVFileLeaf::Ptr& leaf);
    void closeLive(const QStringList& history);
    void takeNews(bool is3d, const QStringList& added, const QStringList& removed);
    bool isWanted(const TORVFileLeaf& leaf, bool is3d) const;
    bool isInSequence(const QString& path, bool is3d) const;
    QString getDataIdHistory(const boost::shared_ptr<const TORVFileLeaf>& leaf) const;
    QString getTimeSpanHistory(const QString& pattern) const;
    void updateDataIdLabel(const TORVDataFrame::CPtr& frame);
    void fitDataIdLabel();

    void updateData(const TORVDataFrame::CPtr& frame);
    void load(const TORVDataFrame::CPtr& frame);
    void updateVisualization(bool force);
    void redraw();
    void submit(const TORVVisualization::Ptr& visualization, const TORVDataFrame::CPtr& frame, bool force, int number);
    std::optional<Run> takeRun(const TORVVisualization* visualization);
    void useResult(const Run& run);
    void setActiveData(const TORVVisualization::Ptr& visualization);
    void closeActiveData();
    void dropRuns();
    void showData(const TORVVisualization::Ptr& visualization);
    void resetView(const TORVFile& file);
    void restoreView(const QString& site);
    void updateColorKey();
    void updateProgress();
    int countBuiltFrames() const;
    void enableDataControls(bool on);
    void updateCursor(bool isWaiting);

    int getAnimTimeSpanInSecs() const;
    int getAnimFrameIntervalInSecs() const;
    int getAnimSpeedInSecs() const;
    void startAnimTimer(int ms);
    void stopPlaying();
    void updatePace();
    void updateAnimIcons();
    void updateAnimControls();
    void syncSlider();
    void updateTimeParams();
    void continuePlayback(const Run& run, bool isShown);

    void toggleRadarLayers(bool on);
    void toggleOutline(bool on);
    void toggle3DProduct(bool on);
    void toggle2DProduct(bool on);
    void toggleGeoLayers(bool on);
    void toggle3DTerrain(bool on);
    void toggleLatLonGrid(bool on);
    void toggleGeoLabels(bool on);
    void toggleRangeRings(bool on);
    void toggleLayer(int key, bool on);
    void toggleMembers(int group, bool on);
    void clickLayer(const LayerRow& row, bool checked);
    const LayerRow& rowOf(int key) const;
    void updateGUIGroups();

    void updateDisplayStates();
    void updateViewAngles();
    static void fillPresetBox(QComboBox* box, const QStringList& presets, const QString& chosen);
    void applyDisplayState(int row);
    void applyViewAngle(int row);
    void manageDisplayStates();
    void manageViewAngles();
    void takeCamera();
    void updateHistory(const TORVDisplayState& previous);

    void updateToolDialogs();
    void changeDirectories();
    void showTool(const Tool& tool);
    void placeTool(QDialog& dialog) const;
    void hideTool(const Tool& tool);
    void toggleTool(const QAction* action);
    const Tool& toolOf(const QAction* action) const;
    void showSettings();
    void hideSettings();
    void showProductInfo();
    void hideProductInfo();
    void showCursorTool();
    void hideCursorTool();
    void showExtraWindow();
    void hideExtraWindow();
    void toggleBackgroundIndicator(bool on);
    void takeBackgroundStatus(bool isRunning);
    void toggleButton(QObject* object, const Face& face);
    void showDiskSpace(int percent);

    DisplayMode* _displayMode = nullptr;
    std::unique_ptr<QSplashScreen> _splash; // gone when the first data was asked for
    QLabel* _label_dataId = nullptr;
    QLabel* _label_progress = nullptr;
    QProgressBar* _progressBar = nullptr;
    TORVDiskSpaceIndicator* _diskSpaceBar = nullptr;
    QLabel* _label_diskSpace = nullptr;
    QShortcut* _leaveFullScreen = nullptr;
    std::vector<LayerRow> _layerRows;

    boost::shared_ptr<TORVGeneralSettings> _genSettings;
    boost::shared_ptr<TORVDisplayState> _displayState;
    TORVViewAngle::Ptr _viewAngle;
    std::optional<TORVViewAngle> _viewToRestore; // once a site is shown again
    QString _viewSite;                           // whose view that is; empty: whichever comes first
    QString _chosenDisplayState;                 // entries of the combo boxes
    QString _chosenViewAngle;

    vtkNew<vtkGenericOpenGLRenderWindow> _renderWindow;
    std::unique_ptr<TORVRenderer> _renderer;
    boost::shared_ptr<TORVDataStore> _dataStore;
    QMutex _dataStoreMutex;
    std::unique_ptr<TORVAnimation> _animation;
    TORVSceneCache _scenes;

    TORVDataFrame::CPtr _dataFrame;        // on show
    TORVVisualization::Ptr _visualization; // that shows it
    QVector<Run> _pending;
    QVector<TORVVisualization::Ptr> _dropped; // still running, for nobody
    int _lastNumber = 0;                      // of requests for frames
    int _shownNumber = 0;
    int _changes = 0; // of settings and display state
    vtkNew<vtkTimerLog> _timerLog;

    TORVProductInformationDialog* _productInfo = nullptr;
    TORVCursorToolDialog* _cursorTool = nullptr;
    TORVGeneralSettingsDialog* _settingsDialog = nullptr;
    TORVDoubleModeDialog* _extraWindow = nullptr;
    std::vector<Tool> _tools;
    QVector<const QAction*> _hiddenTools; // that come back with the panels
    bool _arePanelsHidden = false;
    bool _arePanelsFitted = false;

    QTimer* _startupTimer = nullptr;
    QTimer* _busyTimer = nullptr;
    QTimer* _backgroundTimer = nullptr;
    QTimer* _animTimer = nullptr;
    bool _isPlaying = false;
    bool _isStepDue = false; // the run that is being asked for is one of the playback
    bool _isCursorWaiting = false;
    QIcon _playIcons[2]; // by day, by night
    QIcon _pauseIcons[2];

    TORVServiceCheck* _serviceCheck = nullptr;
    int _backgroundStatus = 0;
};
