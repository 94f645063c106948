#include "gui/TORVGUI.h"

#include "datalib/TORVDataStore.h"
#include "gui/DisplayMode.h"
#include "gui/HalmeraStyle.h"
#include "settings/TORVConfig.h"
#include "settings/TORVDisplayState.h"
#include "settings/TORVGeneralSettings.h"
#include "settings/TORVProductSettings.h"
#include "utils/TORVLog.h"
#include "utils/TORVSettingsReader.h"
#include "visualization/TORVCameraInteractor.h"
#include "visualization/TORVColormap.h"
#include "visualization/TORVPointWidget.h"
#include "visualization/TORVRenderer.h"
#include "visualization/TORVSceneGrid.h"
#include "visualization/TORVWheelFilter.h"

#include <QApplication>
#include <QLabel>
#include <QSettings>
#include <QVector>

#include <vtkGenericOpenGLRenderWindow.h>
#include <vtkObject.h>

#include <boost/make_shared.hpp>

#include <cmath>

namespace
{

constexpr int MostHistoryLines = 512; // a window may stand open for months

constexpr double TerrainFactor = 1.5; // the ground reaches beyond the data by this factor
const char* const TerrainCache = "~/.torv3d/cache/terrain";

QString nightModeKey()
{
    return TORVConfig::DIALOG_GROUP + QLatin1Char('/') + TORVConfig::DIALOG_NIGHTMODE;
}

// As the last session left it.
bool loadNightMode()
{
    TORVConfig* const config = TORVConfig::instance();
    const bool isNight = TORVSettingsReader::flag(config->get()->value(nightModeKey()), false);
    config->release();
    return isNight;
}

void saveNightMode(bool isNight)
{
    TORVConfig* const config = TORVConfig::instance();
    config->get()->setValue(nightModeKey(), isNight);
    config->release();
}

// What the colours of the surfaces mean: a swatch and a value each.
QString surfaceKey(const TORVDataFrame& frame)
{
    const TORVProductSettings& settings = *frame.getProductSettings();
    if (settings.getRenderingType() != TORVProductSettings::SURFACE) {
        return {};
    }
    const TORVFile::CPtr file = frame.getData3d()->getFile();
    const TORVDataType type = file->getDataType();
    const TORVColormap colours(settings.getColorScaleName(), type, TORVColormap::DISPLAY_VALUES, file->getRawType());
    QStringList entries;
    for (const double value : settings.getSurfaces().keys()) {
        const auto [red, green, blue] = colours.getColor(value);
        entries << QStringLiteral("<span style=\"color:%1\">\u25A0</span> %2 %3")
                       .arg(QColor(red, green, blue).name())
                       .arg(value)
                       .arg(type.getQuantityUnit());
    }
    return entries.join(QLatin1String("&nbsp;&nbsp;&nbsp;"));
}

} // namespace

TORVGUI::TORVGUI()
{
    TORVLog* const log = TORVLog::Instance();
    log->logDebug(QStringLiteral("*** Initializing main window.."));
    setupUi(this);
    fillBars();
    initDisplayMode();
    connectLog();
    log->logDebug(QStringLiteral("*** Initializing VTK.."));
    initializeVTK();
    log->logDebug(QStringLiteral("*** Initializing renderer.."));
    _renderer = std::make_unique<TORVRenderer>(_renderWindow, this, this, true);
    _renderer->toggleCompass(true);
    sceneWidget->installEventFilter(new TORVWheelFilter(_renderer->getCameraInteractor(), sceneWidget));
    connect(fileExit, &QAction::triggered, this, &QWidget::close);
    _label_dataId->setText(QCoreApplication::translate("App", "(No data available)"));
    _genSettings = boost::make_shared<TORVGeneralSettings>();
    _displayState = boost::make_shared<TORVDisplayState>();
    _visualization = boost::make_shared<TORVVisualization>(this);
    openDirectories();
}

TORVGUI::~TORVGUI()
{
    _visualization->abort();
    _frame.reset();
    _dataStore.reset();
    disconnect(TORVLog::Instance(), nullptr, this, nullptr);
}

// The style comes before the sheet, and belongs to the application.
void TORVGUI::initDisplayMode()
{
    QApplication::setStyle(new HalmeraStyle);
    _displayMode = new DisplayMode(this);
    QVector<QObject*> windows{this};
    _displayMode->addIcons(windows);
    const bool isNight = loadNightMode();
    _displayMode->toggleDisplayMode(!isNight);
    nightMode->setChecked(isNight);
}

void TORVGUI::fillBars()
{
    mainToolBar->addAction(cursorTool);
    _label_dataId = new QLabel(mainToolBar);
    _label_dataId->setObjectName(QStringLiteral("label_dataId"));
    _label_dataId->setContentsMargins(12, 0, 12, 0);
    _label_dataId->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    mainToolBar->addWidget(_label_dataId);
    mainToolBar->addAction(nightMode);
    mainToolBar->addAction(fileExit);
    _surfaceKey = new QLabel(statusbar);
    _surfaceKey->setContentsMargins(0, 0, 12, 0);
    statusbar->addPermanentWidget(_surfaceKey);
}

void TORVGUI::connectLog()
{
    TORVLog* const log = TORVLog::Instance();
    log->logConnect(this, SLOT(historyAdd(QString)), SLOT(statusAdd(QString, int)));
    connect(log, SIGNAL(historyAdd(QStringList)), this, SLOT(historyAdd(QStringList)));
}

void TORVGUI::initializeVTK()
{
    vtkObject::GlobalWarningDisplayOn();
    sceneWidget->setRenderWindow(_renderWindow);
}

void TORVGUI::openDirectories()
{
    if (_genSettings->get3DDir().isEmpty()) {
        historyAdd(QCoreApplication::translate("App", "Please, set up your data paths."));
        return;
    }
    _dataStore = boost::make_shared<TORVDataStore>(this);
    connect(_dataStore.get(), &TORVDataStore::initialized3d, this, &TORVGUI::showFirst);
    _dataStore->setDirectories(_genSettings->get3DDir(), _genSettings->get2DDir(), _genSettings->getGeoDir(),
                               QLatin1String(TerrainCache));
}

void TORVGUI::showFirst()
{
    if (!followNewest()) {
        historyAdd(QCoreApplication::translate("App", "Requested data not available:"));
        historyAdd(QLatin1String("- ") + _genSettings->get3DDir());
    }
}

void TORVGUI::dataStoreNewDataAvailable3d(TORVDataStore* store, const QStringList& added, const QStringList& removed)
{
    Q_UNUSED(store)
    Q_UNUSED(added)
    Q_UNUSED(removed)
    followNewest();
}

void TORVGUI::dataStoreNewDataAvailable2d(TORVDataStore* store, const QStringList& added, const QStringList& removed)
{
    Q_UNUSED(store)
    Q_UNUSED(added)
    Q_UNUSED(removed)
}

// Whether there is anything to show.
bool TORVGUI::followNewest()
{
    const QString site = _frame ? _frame->getSite() : QStringLiteral("*");
    const TORVFileLeaf::Ptr newest = _dataStore->getLatestData(site, QStringLiteral("CAPPI"), QStringLiteral("Z"));
    if (newest && (!_frame || _frame->getData3d()->getFile() != newest->getFile())) {
        visualize(*newest);
    }
    return _frame != nullptr;
}

void TORVGUI::visualize(const TORVFileLeaf& leaf)
{
    const auto frame = boost::make_shared<TORVDataFrame>(_dataStore, leaf.getSite(), leaf.getTime(), leaf.getProduct(),
                                                         leaf.getConfiguration(), QString(),
                                                         _genSettings->getTimeWindow(), TerrainFactor);
    if (!frame->getData3d()) {
        return; // it has just been removed
    }
    _frame = frame;
    _visualization->setSourceData(_frame);
    _visualization->updateVisualization(false);
}

void TORVGUI::visualizationFinished(TORVVisualization* visualization)
{
    const TORVDataFrame& frame = *visualization->getDataFrame();
    _label_dataId->setText(frame.getDataId(_genSettings));
    _surfaceKey->setText(surfaceKey(frame));
    historyAdd(QLatin1String("- ") + frame.getData3d()->getFile()->getName());
    _renderer->setVisualization(visualization->getResultItem());
    placeCursor(frame);
    if (frame.getSite() != _shownSite) {
        _shownSite = frame.getSite();
        resetView(*frame.getData3d()->getFile());
    }
    _renderer->render();
}

// From straight above, high enough to see the whole volume.
void TORVGUI::resetView(const TORVFile& file)
{
    const double reach = 2.0 * std::hypot(file.getLengthM() / 2.0, file.getWidthM() / 2.0);
    TORVCameraInteractor* const camera = _renderer->getCameraInteractor();
    camera->resetCamera({0.0, 0.0, 2.0 * reach}, {0.0, 1e-6, -1.0}, 4.0 * reach, reach);
    camera->applyCamera(false);
}

void TORVGUI::cameraReset(TORVCameraInteractor* camera)
{
    Q_UNUSED(camera)
}

void TORVGUI::cameraMoved(TORVCameraInteractor* camera)
{
    Q_UNUSED(camera)
}

void TORVGUI::pointWidgetUpdated(TORVPointWidget* widget, const TORVPoint3D& point)
{
    Q_UNUSED(widget)
    Q_UNUSED(point)
}

boost::shared_ptr<const TORVGeneralSettings> TORVGUI::getVisualizationGeneralSettings()
{
    return _genSettings;
}

boost::shared_ptr<const TORVDisplayState> TORVGUI::getVisualizationDisplayState()
{
    return _displayState;
}

// The mode is checked while the window is being made, too: then there is nothing yet that shows it.
void TORVGUI::on_nightMode_toggled(bool on)
{
    if (!_visualization) {
        return;
    }
    saveNightMode(on);
    _displayMode->toggleDisplayMode(!on);
    _visualization->restyle();
    _renderer->updateLights();
    _renderer->render();
}

void TORVGUI::on_cursorTool_toggled(bool on)
{
    _renderer->togglePointWidget(on, true);
}

// The cross hair spans the box of the volume; it starts where the radar is.
void TORVGUI::placeCursor(const TORVDataFrame& frame)
{
    const TORVSceneGrid grid(*frame.getData3d()->getFile());
    const double scale = _genSettings->getVerticalScale();
    const double low = grid.elevation * scale;
    const double box[] = {-grid.radarX, grid.size.x - grid.radarX, -grid.radarY, grid.size.y - grid.radarY,
                          low,          low + grid.size.z * scale};
    TORVPointWidget* const cursor = _renderer->getPointWidget();
    cursor->setVerticalScale(scale);
    cursor->setBounds(box);
    cursor->setHome({0.0, 0.0, grid.elevation}, frame.getSite());
}

void TORVGUI::historyAdd(QString const& text)
{
    if (listWidget_history->count() >= MostHistoryLines) {
        delete listWidget_history->takeItem(0);
    }
    listWidget_history->addItem(text);
    listWidget_history->item(listWidget_history->count() - 1)->setToolTip(text);
    listWidget_history->scrollToBottom();
}

void TORVGUI::historyAdd(QStringList const& lines)
{
    for (const QString& line : lines) {
        historyAdd(line);
    }
}

void TORVGUI::statusAdd(QString const& text, int timeout)
{
    statusBar()->showMessage(text, timeout);
}
