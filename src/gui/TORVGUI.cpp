#include "gui/TORVGUI.h"

#include "datalib/TORVDataStore.h"
#include "gui/DisplayMode.h"
#include "gui/HalmeraStyle.h"
#include "gui/TORVAnimation.h"
#include "gui/TORVCursorToolDialog.h"
#include "gui/TORVDiskSpaceIndicator.h"
#include "gui/TORVDockTitle.h"
#include "gui/TORVDoubleModeDialog.h"
#include "gui/TORVGeneralSettingsDialog.h"
#include "gui/TORVProductInformationDialog.h"
#include "gui/TORVServiceCheck.h"
#include "gui/TORVWheelGuard.h"
#include "settings/TORVConfig.h"
#include "settings/TORVDisplayState.h"
#include "settings/TORVGeneralSettings.h"
#include "utils/TORVApplication.h"
#include "utils/TORVLog.h"
#include "utils/TORVSettingsReader.h"
#include "visualization/TORVRenderer.h"
#include "visualization/TORVWheelFilter.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QProgressBar>
#include <QSettings>
#include <QShortcut>
#include <QSplashScreen>
#include <QStyledItemDelegate>
#include <QTimer>
#include <QWindow>

#include <vtkGenericOpenGLRenderWindow.h>
#include <vtkObject.h>

#include <boost/make_shared.hpp>

namespace
{

constexpr int StartupDelay_ms = 4000;
constexpr int BusyPeriod_ms = 2000;
constexpr int WideWindow = 1500; // pixels: there is room for broader panels
constexpr int PanelWidth = 264;
constexpr int PanelWidthWide = 288;
constexpr int BarWidth = 96;
const char* const TerrainCache = "~/.torv3d/cache/terrain";

void logDebug(const char* text)
{
    TORVLog::Instance()->logDebug(QLatin1String(text));
}

QString dialogKey(const QString& key)
{
    return TORVConfig::DIALOG_GROUP + QLatin1Char('/') + key;
}

QVariant loadDialogValue(const QString& key)
{
    TORVConfig* const config = TORVConfig::instance();
    const QVariant value = config->get()->value(dialogKey(key));
    config->release();
    return value;
}

void saveDialogValue(const QString& key, const QVariant& value)
{
    TORVConfig* const config = TORVConfig::instance();
    config->get()->setValue(dialogKey(key), value);
    config->release();
}

// A view that was never set, or that could not be read, has no direction.
bool isView(const TORVViewAngle& view)
{
    const TORVPoint3D direction = view.getDirection();
    return direction.x != 0.0 || direction.y != 0.0 || direction.z != 0.0;
}

} // namespace

TORVGUI::TORVGUI()
{
    logDebug("*** Initializing main window..");
    setupUi(this);
    fillBars();
    initDisplayMode();
    showSplash();
    loadState();
    restoreWindow();
    connectLog();
    initializeVTK();
    openDirectories();
    createTools();
    _animation = std::make_unique<TORVAnimation>(this);
    createTimers();
    connectAnimationControls();
    connectControls();
    logDebug("*** Updating preset managers..");
    updateDisplayStates();
    updateViewAngles();
    logDebug("*** Updating GUI groups..");
    updateGUIGroups();
    updateAnimControls();
    updateAnimIcons();
    _startupTimer->start(StartupDelay_ms);
    updateBusyState();
}

TORVGUI::~TORVGUI()
{
    abortAll();
    for (QTimer** const timer : {&_busyTimer, &_animTimer, &_backgroundTimer, &_startupTimer}) {
        delete *timer;
        *timer = nullptr;
    }
    _isPlaying = false;
    const TORVViewAngle view = _viewToRestore && !_dataFrame ? *_viewToRestore : *_viewAngle;
    updateData({});
    saveState(view);
    hideTools();
    _genSettings->save();
    // They ask for what the members hold.
    for (const Tool& tool : _tools) {
        delete tool.dialog;
    }
    _tools.clear();
    _animation.reset();
    _dropped.clear();
    _pending.clear();
    _dataStore.reset();
    updateCursor(false);
    disconnect(TORVLog::Instance(), nullptr, this, nullptr);
}

void TORVGUI::saveState(const TORVViewAngle& view)
{
    _genSettings->saveCurrentDisplayState(_displayState);
    _genSettings->saveCurrentViewAngle(boost::make_shared<TORVViewAngle>(view));
    logDebug("Store main window location..");
    saveDialogValue(TORVConfig::DIALOG_MAINWINDOW_POS, saveGeometry());
    saveDialogValue(TORVConfig::DIALOG_MAINWINDOW_STATE, QMainWindow::saveState());
}

void TORVGUI::closeEvent(QCloseEvent* event)
{
    TORVLog::Instance()->logHistory(translate("App", "Shutting down..."));
    abortAll();
    hideTools();
    event->accept();
}

// They would outlive the window on the screen.
void TORVGUI::hideTools()
{
    for (const Tool& tool : _tools) {
        hideTool(tool);
    }
}

// Each returns when its thread has ended: there is nothing left to wait for afterwards.
void TORVGUI::abortAll()
{
    for (const Run& run : _pending) {
        run.visualization->abort();
    }
    for (const TORVVisualization::Ptr& visualization : _dropped) {
        visualization->abort();
    }
    for (const TORVAnimation::FramePtr& frame : _animation->getFrames()) {
        frame->getVisualization()->abort();
    }
    _extraWindow->abort();
}

QString TORVGUI::translate(const char* context, const char* text)
{
    return QCoreApplication::translate(context, text);
}

// The style comes before the sheet, and belongs to the application.
void TORVGUI::initDisplayMode()
{
    QApplication::setStyle(new HalmeraStyle);
    _displayMode = new DisplayMode(this);
    QVector<QObject*> windows{this};
    _displayMode->addIcons(windows);
    const bool isNight = TORVSettingsReader::flag(loadDialogValue(TORVConfig::DIALOG_NIGHTMODE), false);
    nightMode->setChecked(isNight);
    _displayMode->toggleDisplayMode(!isNight);
}

// It is painted before the directories are looked at; nothing else can happen in this one round of events.
void TORVGUI::showSplash()
{
    _splash = std::make_unique<QSplashScreen>(QPixmap(QStringLiteral(":/icons/splash_screen.png")));
    _splash->show();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

// The window that has just come would hide it.
void TORVGUI::raiseSplash()
{
    if (!_splash || !_splash->windowHandle()) {
        return;
    }
    _splash->windowHandle()->setTransientParent(windowHandle());
    _splash->move(frameGeometry().center() - _splash->rect().center());
    _splash->raise();
}

void TORVGUI::fillBars()
{
    fillToolBar();
    fillStatusBar();
    prepareDocks();
    makeLayerRows();
    for (QComboBox* const box : findChildren<QComboBox*>()) {
        box->setItemDelegate(new QStyledItemDelegate(box)); // that the sheet can paint
    }
    TORVWheelGuard::guard(this);
}

void TORVGUI::fillToolBar()
{
    _label_dataId = new QLabel(mainToolBar);
    _label_dataId->setObjectName(QStringLiteral("label_dataId"));
    _label_dataId->setContentsMargins(12, 0, 12, 0);
    _label_dataId->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    _label_dataId->setMinimumWidth(1); // it cuts its text itself
    _label_dataId->setText(translate("App", "(No data available)"));
    mainToolBar->addActions({fileOpen, fileCloseData});
    mainToolBar->addSeparator();
    mainToolBar->addActions({productInfo, cursorTool, extraWindow, snapshot});
    mainToolBar->addSeparator();
    mainToolBar->addWidget(_label_dataId);
    mainToolBar->addSeparator();
    mainToolBar->addActions({animation, floatsHide, fullScreen, nightMode});
    mainToolBar->addSeparator();
    mainToolBar->addActions({settings, help, fileExit});
    for (QAction* const action : mainToolBar->actions()) {
        if (QWidget* const button = mainToolBar->widgetForAction(action); button && button != _label_dataId) {
            button->setAccessibleName(action->toolTip());
        }
    }
    animation->setChecked(true);
    snapshot->setEnabled(false); // there is nothing yet that it could open
}

void TORVGUI::fillStatusBar()
{
    _label_progress = new QLabel(statusbar);
    _progressBar = new QProgressBar(statusbar);
    _progressBar->setObjectName(QStringLiteral("progressBar"));
    _progressBar->setTextVisible(false);
    _progressBar->setAccessibleName(translate("App", "Progress"));
    auto* const caption = new QLabel(translate("App", "3D data disk"), statusbar);
    _diskSpaceBar = new TORVDiskSpaceIndicator(statusbar);
    _diskSpaceBar->setObjectName(QStringLiteral("diskSpaceBar"));
    _diskSpaceBar->setAccessibleName(caption->text());
    _diskSpaceBar->setFixedWidth(BarWidth);
    _progressBar->setFixedWidth(BarWidth);
    _label_diskSpace = new QLabel(statusbar);
    _label_diskSpace->setMinimumWidth(_label_diskSpace->fontMetrics().horizontalAdvance(QStringLiteral("100%")));
    _label_diskSpace->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    for (QWidget* const widget :
         {static_cast<QWidget*>(_label_progress), static_cast<QWidget*>(_progressBar), static_cast<QWidget*>(caption),
          static_cast<QWidget*>(_diskSpaceBar), static_cast<QWidget*>(_label_diskSpace)}) {
        statusbar->addPermanentWidget(widget);
    }
    _label_progress->hide();
    _progressBar->hide();
    connect(_diskSpaceBar, &TORVDiskSpaceIndicator::percentChanged, this, &TORVGUI::showDiskSpace);
}

void TORVGUI::prepareDocks()
{
    setCorner(Qt::BottomLeftCorner, Qt::LeftDockWidgetArea);
    for (QDockWidget* const dock : {dockWidget_control, dockWidget_history, dockWidget_animation}) {
        dock->setTitleBarWidget(new TORVDockTitle(dock));
    }
    animationContents->setParts(animationButtons, animationTimeline, animationSettings);
}

// As the last session left them.
void TORVGUI::loadState()
{
    logDebug("*** Loading general settings..");
    _genSettings = boost::make_shared<TORVGeneralSettings>();
    logDebug("*** Loading display state and view angle presets..");
    _displayState = boost::make_shared<TORVDisplayState>();
    _viewAngle = boost::make_shared<TORVViewAngle>();
    _genSettings->loadDisplayStates(_displayState);
    _genSettings->loadViewAngles(_viewAngle);
    if (isView(*_viewAngle)) {
        _viewToRestore = *_viewAngle;
    }
}

// A restored window may be one of another screen, or a full screen.
void TORVGUI::restoreWindow()
{
    logDebug("*** Restoring main window location..");
    const QByteArray geometry = loadDialogValue(TORVConfig::DIALOG_MAINWINDOW_POS).toByteArray();
    const QByteArray docks = loadDialogValue(TORVConfig::DIALOG_MAINWINDOW_STATE).toByteArray();
    if (!geometry.isEmpty()) {
        restoreGeometry(geometry);
    }
    _arePanelsFitted = !docks.isEmpty() && restoreState(docks);
    fullScreen->setChecked(isFullScreen());
    animation->setChecked(!dockWidget_animation->isHidden());
}

void TORVGUI::connectLog()
{
    TORVLog* const log = TORVLog::Instance();
    log->logConnect(this, SLOT(historyAdd(QString)), SLOT(statusAdd(QString, int)));
    connect(log, SIGNAL(historyAdd(QStringList)), this, SLOT(historyAdd(QStringList)));
}

void TORVGUI::initializeVTK()
{
    logDebug("*** Initializing VTK..");
    vtkObject::GlobalWarningDisplayOn();
    sceneWidget->setRenderWindow(_renderWindow);
    logDebug("*** Initializing renderer..");
    _renderer = std::make_unique<TORVRenderer>(_renderWindow, this, this, true);
    _renderer->toggleCompass(true);
    sceneWidget->installEventFilter(new TORVWheelFilter(_renderer->getCameraInteractor(), sceneWidget));
}

// Each product directory is read by a thread of its own and may be there only after the start.
void TORVGUI::openDirectories()
{
    if (!_dataStore) {
        logDebug("*** Initializing data store..");
        _dataStore = boost::make_shared<TORVDataStore>(this);
        connect(_dataStore.get(), &TORVDataStore::initialized3d, this, &TORVGUI::dataInitialized);
        connect(_dataStore.get(), &TORVDataStore::initialized2d, this, &TORVGUI::dataInitialized);
    }
    _dataStore->setDirectories(_genSettings->get3DDir(), _genSettings->get2DDir(), _genSettings->getGeoDir(),
                               QLatin1String(TerrainCache));
}

void TORVGUI::createTools()
{
    logDebug("*** Creating tool dialogs..");
    _productInfo = new TORVProductInformationDialog(this, this);
    _cursorTool = new TORVCursorToolDialog(this, this);
    _settingsDialog = new TORVGeneralSettingsDialog(this, this);
    _extraWindow = new TORVDoubleModeDialog(this, this);
    _tools = {{settings, _settingsDialog, _settingsDialog, &TORVGUI::showSettings, &TORVGUI::hideSettings},
              {productInfo, _productInfo, _productInfo, &TORVGUI::showProductInfo, &TORVGUI::hideProductInfo},
              {cursorTool, _cursorTool, _cursorTool, &TORVGUI::showCursorTool, &TORVGUI::hideCursorTool},
              {extraWindow, _extraWindow, _extraWindow, &TORVGUI::showExtraWindow, &TORVGUI::hideExtraWindow}};
    connect(_productInfo, &TORVProductInformationDialog::applyChanges, this, &TORVGUI::applyProductInfo);
    connect(_settingsDialog, &TORVGeneralSettingsDialog::applyChanges, this, &TORVGUI::applySettings);
    connect(_settingsDialog, &TORVGeneralSettingsDialog::clearGeoCache, this, &TORVGUI::clearGeoCache);
    QVector<QObject*> dialogs;
    for (const Tool& tool : _tools) {
        connect(tool.dialog, &QDialog::finished, this, tool.hide);
        dialogs << tool.dialog;
    }
    _displayMode->addIcons(dialogs);
}

void TORVGUI::createTimers()
{
    _startupTimer = new QTimer(this);
    _startupTimer->setObjectName(QStringLiteral("startupTimer"));
    _startupTimer->setSingleShot(true);
    connect(_startupTimer, &QTimer::timeout, this, &TORVGUI::initialize);
    _animTimer = new QTimer(this);
    _animTimer->setSingleShot(true);
    connect(_animTimer, &QTimer::timeout, this, &TORVGUI::animTimerEvent);
    _busyTimer = new QTimer(this);
    connect(_busyTimer, &QTimer::timeout, this, &TORVGUI::updateBusyState);
    _busyTimer->start(BusyPeriod_ms);
    _serviceCheck = new TORVServiceCheck(TORVApplication::BG_SERVICE_NAME, this);
    connect(_serviceCheck, &TORVServiceCheck::checked, this, &TORVGUI::takeBackgroundStatus);
}

void TORVGUI::connectControls()
{
    const auto chosen = static_cast<void (QComboBox::*)(int)>(&QComboBox::activated);
    connect(comboBox_liveMode, chosen, this, &TORVGUI::comboBoxLiveMode);
    connect(comboBox_radarSite, chosen, this, &TORVGUI::comboBoxRadarSite);
    connect(comboBox_displayState, chosen, this, &TORVGUI::comboBoxDisplayState);
    connect(comboBox_viewAngle, chosen, this, &TORVGUI::comboBoxViewAngle);
    connect(fileOpen, &QAction::triggered, this, &TORVGUI::fileOpen3DData);
    connect(fileCloseData, &QAction::triggered, this, &TORVGUI::fileClose);
    connect(fileExit, &QAction::triggered, this, &QWidget::close);
    connect(animation, &QAction::toggled, this, &TORVGUI::toggleAnimControls);
    auto* const otherMode = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_L), this);
    connect(otherMode, &QShortcut::activated, this, [this] {
        if (comboBox_liveMode->isEnabled()) {
            toggleLiveMode(!_genSettings->isLiveMode());
        }
    });
    _leaveFullScreen = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    _leaveFullScreen->setEnabled(isFullScreen());
    connect(_leaveFullScreen, &QShortcut::activated, this, &TORVGUI::on_fullScreen_triggered);
    markLiveMode();
}

void TORVGUI::resizeEvent(QResizeEvent* event)
{
    QMainWindow::resizeEvent(event);
    fitPanels();
    fitDataIdLabel();
}

// The history takes the height that the controls leave, unless the user has arranged the panels.
void TORVGUI::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    QTimer::singleShot(0, this, &TORVGUI::raiseSplash);
    if (_arePanelsFitted) {
        return;
    }
    _arePanelsFitted = true;
    const int controls = dockWidget_control->sizeHint().height();
    resizeDocks({dockWidget_control, dockWidget_history}, {controls, height()}, Qt::Vertical);
}

void TORVGUI::fitPanels()
{
    const int broad = width() >= WideWindow ? PanelWidthWide : PanelWidth;
    if (controlContents->minimumWidth() != broad) {
        controlContents->setMinimumWidth(broad);
        historyContents->setMinimumWidth(broad);
    }
}
