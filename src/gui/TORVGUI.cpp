#include "gui/TORVGUI.h"

#include "datalib/TORVDirTop.h"
#include "datalib/TORVDirectoryWatcher.h"
#include "datalib/TORVWildcard.h"
#include "gui/TORVPictureJob.h"
#include "settings/TORVConfig.h"
#include "utils/TORVLog.h"
#include "visualization/TORVRenderer.h"

#include <QApplication>
#include <QLabel>
#include <QLocale>
#include <QPalette>
#include <QSettings>

#include <vtkGenericOpenGLRenderWindow.h>
#include <vtkObject.h>

namespace
{

constexpr int MostHistoryLines = 512; // a window may stand open for months

QString configuredDirectory()
{
    QSettings* const settings = TORVConfig::instance()->get();
    settings->beginGroup(TORVConfig::GENERAL_GROUP);
    const QString directory = settings->value(TORVConfig::GENERAL_DATA3D_URL).toString();
    settings->endGroup();
    TORVConfig::instance()->release();
    return directory;
}

QString dataId(const TORVFile& file)
{
    const QString time = QLocale::c().toString(file.getDataTime(), QStringLiteral("ddd yyyy-MM-dd HH:mm"));
    return file.getSite() + QLatin1String(": ") + time;
}

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
QString surfaceKey(const QString& unit)
{
    QStringList entries;
    for (const TORVProductScene::Surface& surface : TORVProductScene::reflectivitySurfaces()) {
        const QColor colour = QColor::fromRgbF(surface.red, surface.green, surface.blue);
        entries << QStringLiteral("<span style=\"color:%1\">\u25A0</span> %2 %3")
                       .arg(colour.name())
                       .arg(surface.value)
                       .arg(unit);
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
    openDirectory();
}

TORVGUI::~TORVGUI()
{
    _watcher.reset();
    _picture.reset();
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

void TORVGUI::openDirectory()
{
    const QString directory = configuredDirectory();
    if (directory.isEmpty()) {
        historyAdd(QCoreApplication::translate("App", "Please, set up your data paths."));
        return;
    }
    startPicture();
    _picture->start(directory);
    _watcher = std::make_unique<TORVDirectoryWatcher>(directory, TORVDirectoryWatchData::DIRECTORY_3D);
    connect(_watcher.get(), &TORVDirectoryWatcher::initialized, this, &TORVGUI::followNewest);
    connect(_watcher.get(), &TORVDirectoryWatcher::newFiles, this, &TORVGUI::followNewest);
}

void TORVGUI::startPicture()
{
    _picture = std::make_unique<TORVPictureJob>();
    connect(_picture.get(), &TORVPictureJob::finished, this, &TORVGUI::showPicture);
}

void TORVGUI::showPicture()
{
    const TORVProductScene::CPtr scene = _picture->getScene();
    _picture.release()->deleteLater(); // it is the one that calls
    if (!scene && !_shown) {
        historyAdd(QCoreApplication::translate("App", "Requested data not available:"));
        historyAdd(QLatin1String("- ") + configuredDirectory());
    }
    if (scene) {
        _shown = scene->getFile();
        _label_dataId->setText(dataId(*_shown));
        _surfaceKey->setText(surfaceKey(_shown->getDataType().getQuantityUnit()));
        historyAdd(QLatin1String("- ") + _shown->getName());
        _renderer->setScene(scene);
        _renderer->render();
    }
    followNewest(); // something newer may have come meanwhile
}

void TORVGUI::followNewest()
{
    while (!_watcher->getAddedFile().isEmpty() || !_watcher->getRemovedFile().isEmpty()) {
        // The tree knows; the names are of no interest here.
    }
    if (_picture) {
        return;
    }
    const TORVFile::CPtr newest = newestOfShownSite();
    if (newest && newest != _shown) {
        startPicture();
        _picture->start(newest);
    }
}

TORVFile::CPtr TORVGUI::newestOfShownSite() const
{
    const boost::shared_ptr<TORVDirTop> top = _watcher->getTop();
    if (!top) {
        return _shown;
    }
    const QString all = QStringLiteral("*");
    const QString site = _shown ? TORVWildcard::patternFor(_shown->getSite()) : all;
    TORVFile::CPtr best = _shown;
    const TORVDirTop::LeavesPtr leaves = top->findLatestLeaves(site, all, all, 0);
    for (const TORVDirectory::Ptr& node : std::as_const(*leaves)) {
        const TORVFile::CPtr file = boost::static_pointer_cast<TORVFileLeaf>(node)->getFile();
        if (TORVPictureJob::isBetter(*file, best)) {
            best = file;
        }
    }
    return best;
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
