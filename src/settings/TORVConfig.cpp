#include "settings/TORVConfig.h"

#include "utils/TORVApplication.h"
#include "utils/TORVLog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMap>
#include <QRegularExpression>
#include <QSettings>
#include <QStringList>
#include <QThread>
#include <QVariant>

#include <cassert>

namespace
{

constexpr const char* DefaultName = QT_TRANSLATE_NOOP("Config", "Default");
constexpr int CopyTimeLimit_ms = 30000;

std::mutex instanceMutex;

std::unique_ptr<QSettings> openSettings()
{
    auto settings = std::make_unique<QSettings>();
    // Before the first value is looked at: Qt decodes a file once in a process.
    settings->setIniCodec("UTF-8");
    return settings;
}

// A line of a garbled file may have no key at all.
void insertValues(const QSettings& settings, const QStringList& keys, QMap<QString, QVariant>& values)
{
    for (const QString& key : keys) {
        if (!key.isEmpty()) {
            values.insert(key, settings.value(key));
        }
    }
}

QMap<QString, QVariant> strayGeneralValues(QSettings& settings)
{
    QMap<QString, QVariant> values;
    settings.beginGroup(QStringLiteral("General"));
    insertValues(settings, settings.allKeys(), values);
    settings.endGroup();
    // A section that somebody wrote by hand is the younger one, so it wins.
    insertValues(settings, settings.childKeys(), values);
    return values;
}

void gatherGeneralGroup(QSettings& settings)
{
    settings.setFallbacksEnabled(false);
    const QMap<QString, QVariant> values = strayGeneralValues(settings);
    // A file that can't be written is left alone, or merely reading it would count as a failure to save.
    if (!values.isEmpty() && settings.isWritable()) {
        for (const QString& key : settings.childKeys()) {
            if (!key.isEmpty()) { // to Qt no key means all of them
                settings.remove(key);
            }
        }
        settings.remove(QStringLiteral("General"));
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            settings.setValue(TORVConfig::GENERAL_GROUP + QLatin1Char('/') + value.key(), value.value());
        }
        settings.sync();
    }
    settings.setFallbacksEnabled(true);
}

QVariant valueInAnyForm(const QSettings& settings, const QString& key)
{
    // A section that somebody wrote by hand, without a group here, is younger than what Qt wrote.
    for (const QString& name :
         {TORVConfig::GENERAL_GROUP + QLatin1Char('/') + key, key, QLatin1String("General/") + key}) {
        if (settings.contains(name)) {
            return settings.value(name);
        }
    }
    return {};
}

QString rootOf(const QString& settingsFile)
{
    const QString organizationDirectory = QFileInfo(settingsFile).absolutePath();
    return QFileInfo(organizationDirectory).absolutePath();
}

void reportFailure(const QString& fileName)
{
    TORVLog::Instance()->logWarning(QStringLiteral("Settings file can't be read or written: ") + fileName);
    TORVLog::Instance()->logHistory(
        QCoreApplication::translate("Config", "Settings may be lost, the file can't be read or written: %1")
            .arg(fileName));
}

} // namespace

const QString TORVConfig::VALUE_DEFAULT = QString::fromLatin1(DefaultName);
const QString TORVConfig::VALUE_CUSTOM = QStringLiteral("Custom");

const QString TORVConfig::GENERAL_GROUP = QStringLiteral("GENERAL");
const QString TORVConfig::GENERAL_CLOCK = QStringLiteral("clock24hours");
const QString TORVConfig::GENERAL_UNITS = QStringLiteral("metricunits");
const QString TORVConfig::GENERAL_LATLON_UNITS = QStringLiteral("latlonunits");
const QString TORVConfig::GENERAL_GEOLAYER_URL = QStringLiteral("geolayer");
const QString TORVConfig::GENERAL_DATA3D_URL = QStringLiteral("data3d");
const QString TORVConfig::GENERAL_DATA2D_URL = QStringLiteral("data2d");
const QString TORVConfig::GENERAL_VERTICALSCALING = QStringLiteral("verticalscaling");

const QString TORVConfig::PRODUCT_GROUP = QStringLiteral("PRODUCT");
const QString TORVConfig::PRODUCT_RENDERING_TYPE = QStringLiteral("rendering");
const QString TORVConfig::PRODUCT_SURFACE_ARRAY = QStringLiteral("surface");
const QString TORVConfig::PRODUCT_SURFACE_VALUE = QStringLiteral("isovalue");
const QString TORVConfig::PRODUCT_SURFACE_OPACITY = QStringLiteral("opacity");
const QString TORVConfig::PRODUCT_VOLUME_VALUE_LOW = QStringLiteral("volumevaluelow");
const QString TORVConfig::PRODUCT_VOLUME_OPACITY_LOW = QStringLiteral("volumeopacitylow");
const QString TORVConfig::PRODUCT_VOLUME_VALUE_HIGH = QStringLiteral("volumevaluehigh");
const QString TORVConfig::PRODUCT_VOLUME_OPACITY_HIGH = QStringLiteral("volumeopacityhigh");

const QString TORVConfig::HELP_GROUP = QStringLiteral("HELP");
const QString TORVConfig::HELP_COMMAND = QStringLiteral("command");
const QString TORVConfig::HELP_FILE = QStringLiteral("file");

const QString TORVConfig::DIALOG_GROUP = QStringLiteral("DIALOG");
const QString TORVConfig::DIALOG_MAINWINDOW_POS = QStringLiteral("mainwindowpos");
const QString TORVConfig::DIALOG_MAINWINDOW_STATE = QStringLiteral("mainwindowstate");
const QString TORVConfig::DIALOG_CURSORTOOL_POS = QStringLiteral("cursortoolpos");
const QString TORVConfig::DIALOG_CURSORTOOL_EXPANDED = QStringLiteral("cursortoolexpanded");
const QString TORVConfig::DIALOG_PRODUCTINFO_POS = QStringLiteral("productinfopos");
const QString TORVConfig::DIALOG_PRODUCTINFO_EXPANDED = QStringLiteral("productinfoexpanded");
const QString TORVConfig::DIALOG_EXTRAWIN_POS = QStringLiteral("extrawinpos");
const QString TORVConfig::DIALOG_NIGHTMODE = QStringLiteral("nightmode");

const QString TORVConfig::DISPLAY_STATE_GROUP = QStringLiteral("DISPLAYSTATE");
const QString TORVConfig::DISPLAY_STATE_ARRAY = QStringLiteral("DISPLAYSTATES");
const QString TORVConfig::DISPLAY_STATE_NAME = QStringLiteral("displayStateName");
const QString TORVConfig::DISPLAY_STATE_LAYER_VISIBLE = QStringLiteral("displayStateLayerVisible");
const QString TORVConfig::DISPLAY_STATE_LAYER_OPACITY = QStringLiteral("displayStateLayerOpacity");

const QString TORVConfig::VIEW_ANGLE_GROUP = QStringLiteral("VIEWANGLE");
const QString TORVConfig::VIEW_ANGLE_ARRAY = QStringLiteral("VIEWANGLES");
const QString TORVConfig::VIEW_ANGLE_NAME = QStringLiteral("viewAngleName");
const QString TORVConfig::VIEW_ANGLE_CAMPOS_X = QStringLiteral("viewAngleCamPosX");
const QString TORVConfig::VIEW_ANGLE_CAMPOS_Y = QStringLiteral("viewAngleCamPosY");
const QString TORVConfig::VIEW_ANGLE_CAMPOS_Z = QStringLiteral("viewAngleCamPosZ");
const QString TORVConfig::VIEW_ANGLE_CAMDIR_X = QStringLiteral("viewAngleCamDirX");
const QString TORVConfig::VIEW_ANGLE_CAMDIR_Y = QStringLiteral("viewAngleCamDirY");
const QString TORVConfig::VIEW_ANGLE_CAMDIR_Z = QStringLiteral("viewAngleCamDirZ");

std::unique_ptr<TORVConfig> TORVConfig::_instance;

TORVConfig::TORVConfig() = default;
TORVConfig::~TORVConfig() = default;

TORVConfig* TORVConfig::instance()
{
    const std::lock_guard<std::mutex> lock(instanceMutex);
    if (!_instance) {
        _instance.reset(new TORVConfig);
    }
    return _instance.get();
}

void TORVConfig::destroy()
{
    const std::lock_guard<std::mutex> lock(instanceMutex);
    _instance.reset();
}

QSettings* TORVConfig::get()
{
    assert(_borrower != QThread::currentThreadId() && "this thread has borrowed the settings already");
    _mutex.lock();
    _borrower = QThread::currentThreadId();
    _settings = openSettings();
    gatherGeneralGroup(*_settings);
    return _settings.get();
}

void TORVConfig::release()
{
    assert(_borrower == QThread::currentThreadId() && "only the borrower gives the settings back");
    _settings->sync();
    const bool isNewFailure = _settings->status() != QSettings::NoError && !_isFailureReported;
    _isFailureReported = _isFailureReported || isNewFailure;
    const QString fileName = _settings->fileName();
    _settings.reset();
    _borrower = nullptr;
    _mutex.unlock();
    // Outside the lock: whoever shows the history line may want settings.
    if (isNewFailure) {
        reportFailure(fileName);
    }
}

QVariant TORVConfig::generalValue(QSettings& settings, const QString& key)
{
    settings.setFallbacksEnabled(false);
    const QVariant own = valueInAnyForm(settings, key);
    settings.setFallbacksEnabled(true);
    return own.isValid() ? own : valueInAnyForm(settings, key);
}

QString TORVConfig::getSettingsPath()
{
    static const QRegularExpression pattern(QRegularExpression::anchoredPattern(
        QLatin1String("(\\S+\\.config)/") + QRegularExpression::escape(TORVApplication::ORGANIZATION_NAME)));
    return pattern.match(QFileInfo(QSettings().fileName()).absolutePath()).captured(1);
}

void TORVConfig::changeUser(const QString& user)
{
    const QString path = getSettingsPath();
    QString& remembered = instance()->_rememberedPath;
    remembered = path.isEmpty() ? rootOf(QSettings().fileName()) : path;
    TORVLog::Instance()->logDebug(QLatin1String("Remember settings path: ") + remembered);
    const QString home = TORVApplication::getUserHomeDirectory(user);
    if (!home.isEmpty()) {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, home + QLatin1String("/.config"));
    }
}

void TORVConfig::restoreUser()
{
    const QString path = instance()->_rememberedPath;
    if (path.isEmpty()) {
        TORVLog::Instance()->logWarning(QStringLiteral("No settings path to restore"));
        return;
    }
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, path);
    TORVLog::Instance()->logDebug(QLatin1String("Restored settings path to: ") + path);
}

bool TORVConfig::copy(const QString& directory)
{
    const QString source = get()->fileName();
    const QString destination = directory + QDir::separator() + QFileInfo(source).fileName();
    TORVLog* const log = TORVLog::Instance();
    log->logDebug(QStringLiteral("Make copy of %1 ...").arg(source));
    log->logDebug(QLatin1String("... to ") + destination);
    const bool isCopied =
        TORVApplication::runCommand(QStringLiteral("cp"), {source, destination}, CopyTimeLimit_ms) == 0;
    log->logDebug(isCopied ? QStringLiteral("SUCCESS") : QStringLiteral("FAILED"));
    release();
    return isCopied;
}

QString TORVConfig::defaultValueTranslated()
{
    return QCoreApplication::translate("Config", DefaultName);
}
