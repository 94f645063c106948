#include "gui/TORVGUI.h"

#include "datalib/TORVDataStore.h"
#include "settings/TORVDisplayState.h"
#include "settings/TORVGeneralSettings.h"
#include "settings/TORVProductSettings.h"
#include "utils/TORVLog.h"
#include "visualization/TORVColormap.h"
#include "visualization/TORVRenderer.h"

#include <QApplication>
#include <QLabel>
#include <QPalette>

#include <vtkGenericOpenGLRenderWindow.h>
#include <vtkObject.h>

#include <boost/make_shared.hpp>

namespace
{

constexpr int MostHistoryLines = 512; // a window may stand open for months

constexpr double TerrainFactor = 1.5; // the ground reaches beyond the data by this factor
const char* const TerrainCache = "~/.torv3d/cache/terrain";

struct Role
{
    QPalette::ColorRole role;
    const char* colour;
};

// The colours of the window by day; the scene has its own, darker ones.
const Role DayRoles[] = {
    {QPalette::Window, "#EEF1F3"},      {QPalette::WindowText, "#17212A"},      {QPalette::Base, "#FAFBFC"},
    {QPalette::Text, "#17212A"},        {QPalette::Button, "#F7F9FA"},          {QPalette::ButtonText, "#17212A"},
    {QPalette::Highlight, "#0B5A84"},   {QPalette::HighlightedText, "#FFFFFF"}, {QPalette::ToolTipBase, "#22303A"},
    {QPalette::ToolTipText, "#F2F5F7"},
};

QPalette dayPalette()
{
    QPalette palette;
    for (const Role& row : DayRoles) {
        palette.setColor(row.role, QColor(QLatin1String(row.colour)));
    }
    return palette;
}

QFont textFont(int pixels, QFont::Weight weight)
{
    QFont font(QStringLiteral("Open Sans"));
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
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
    QApplication::setPalette(dayPalette());
    QApplication::setFont(textFont(13, QFont::Normal));
    fillBars();
    connectLog();
    log->logDebug(QStringLiteral("*** Initializing VTK.."));
    initializeVTK();
    log->logDebug(QStringLiteral("*** Initializing renderer.."));
    _renderer = std::make_unique<TORVRenderer>(_renderWindow);
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

void TORVGUI::fillBars()
{
    _label_dataId = new QLabel(mainToolBar);
    _label_dataId->setObjectName(QStringLiteral("label_dataId"));
    _label_dataId->setFont(textFont(16, QFont::DemiBold));
    _label_dataId->setContentsMargins(12, 0, 12, 0);
    _label_dataId->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    mainToolBar->addWidget(_label_dataId);
    mainToolBar->addAction(fileExit);
    _surfaceKey = new QLabel(statusbar);
    _surfaceKey->setContentsMargins(0, 0, 12, 0);
    statusbar->addPermanentWidget(_surfaceKey);
    listWidget_history->setFont(textFont(12, QFont::Normal));
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
    _renderer->setScene(*visualization);
    _renderer->render();
}

boost::shared_ptr<const TORVGeneralSettings> TORVGUI::getVisualizationGeneralSettings()
{
    return _genSettings;
}

boost::shared_ptr<const TORVDisplayState> TORVGUI::getVisualizationDisplayState()
{
    return _displayState;
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
