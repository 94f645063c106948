#include "settings/TORVBackgroundSettings.h"

#include "datalib/TORV2DTop.h"
#include "datalib/TORV3DTop.h"
#include "settings/TORVConfig.h"
#include "settings/TORVSettingsField.h"
#include "utils/TORVApplication.h"
#include "utils/TORVLog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace
{

const QString Group = QStringLiteral("BACKGROUND");
const QString ProductArray = QStringLiteral("products");
const QString ProductKey = QStringLiteral("product");
const QString ConfigurationKey = QStringLiteral("configuration");
const QString DefaultProduct = QStringLiteral("SRI");
const QString DefaultUser = QStringLiteral("torv3d");
const QString AnySite = QStringLiteral("*");

constexpr qint64 LargestStartUpFile = 65536;

std::unique_ptr<QSettings> openSettings(const QString& path)
{
    auto settings = std::make_unique<QSettings>(path, QSettings::NativeFormat);
    settings->setIniCodec("UTF-8");
    // In a directory of somebody else a file may be written, but none be put in its place.
    settings->setAtomicSyncRequired(false);
    settings->beginGroup(Group);
    return settings;
}

QMap<QString, QString> readProducts(QSettings& settings)
{
    QMap<QString, QString> products;
    const int size = settings.beginReadArray(ProductArray);
    for (const int index : TORVSettingsReader::arrayIndexes(settings, size)) {
        settings.setArrayIndex(index);
        const QString configuration = TORVSettingsReader::text(settings.value(ConfigurationKey), {});
        if (!configuration.isEmpty()) {
            products.insert(configuration, TORVSettingsReader::text(settings.value(ProductKey), DefaultProduct));
        }
    }
    settings.endArray();
    return products;
}

void writeProducts(QSettings& settings, const QMap<QString, QString>& products)
{
    settings.remove(ProductArray);
    settings.beginWriteArray(ProductArray, products.size());
    int index = 0;
    for (auto product = products.cbegin(); product != products.cend(); ++product) {
        settings.setArrayIndex(index++);
        settings.setValue(ProductKey, product.value());
        settings.setValue(ConfigurationKey, product.key());
    }
    settings.endArray();
}

bool canBeOpened(const QString& path, QIODevice::OpenMode mode)
{
    return QFile(path).open(mode | QIODevice::ExistingOnly);
}

// The directory itself may have to be made as well.
bool canBeCreated(const QString& path)
{
    QFileInfo directory(QFileInfo(path).absolutePath());
    while (!directory.exists() && !directory.isRoot()) {
        directory.setFile(directory.absolutePath());
    }
    return directory.isDir() && directory.isWritable() && directory.isExecutable();
}

QString nameToUser(const QString& name)
{
    return name == TORVConfig::VALUE_DEFAULT ? TORVConfig::defaultValueTranslated() : name;
}

QString nameFromUser(const QString& name)
{
    return name == TORVConfig::defaultValueTranslated() ? TORVConfig::VALUE_DEFAULT : name;
}

QStringList inOrder(QStringList names)
{
    names.removeAll(QString());
    names.removeDuplicates();
    names.sort();
    return names;
}

} // namespace

struct TORVBackgroundSettings::Row
{
    TORVSettingsField<Values> field;
    bool isReset;
};

const std::vector<TORVBackgroundSettings::Row>& TORVBackgroundSettings::rows()
{
    using F = TORVSettingsField<Values>;
    using V = Values;
    static const std::vector<Row> table = {
        {F::flag("activated", &V::activated, false), true},
        {F::text("directory", &V::directory, "."), true},
        {F::choice("outputformat", &V::outputFormat, TORVExportSettings::FORMAT_TIFF,
                   TORVExportSettings::formatNames()),
         false},
        {F::text("displaystate", &V::displayStateName, TORVConfig::VALUE_DEFAULT), false},
        {F::text("viewangle", &V::viewAngleName, TORVConfig::VALUE_DEFAULT), false},
        {F::integer("height", &V::height, 1200, 1, TORVExportSettings::MaxSide), true},
        {F::integer("width", &V::width, 1600, 1, TORVExportSettings::MaxSide), true},
    };
    return table;
}

TORVBackgroundSettings::TORVBackgroundSettings() : TORVBackgroundSettings(getBgSettingsFileName()) {}

TORVBackgroundSettings::TORVBackgroundSettings(const QString& path) : _path(path)
{
    load();
}

QString TORVBackgroundSettings::getBgUsername(const QString& configurationDirectory)
{
    QString name;
    QFile file(QDir(configurationDirectory).filePath(TORVApplication::BG_SERVICE_NAME));
    if (!configurationDirectory.isEmpty() && QFileInfo(file).isFile() && file.open(QIODevice::ReadOnly)) {
        static const QRegularExpression pattern(QStringLiteral("BG_USER=(\\S*)"));
        name = pattern.match(QString::fromLocal8Bit(file.read(LargestStartUpFile))).captured(1);
    }
    if (!name.isEmpty()) {
        return name;
    }
    TORVLog::Instance()->logDebug(
        QLatin1String("Background user not configured - using default for background username ") + DefaultUser);
    return DefaultUser;
}

QString TORVBackgroundSettings::getBgUsername()
{
    return getBgUsername(TORVApplication::getSystemConfigurationDirectory());
}

QString TORVBackgroundSettings::getBgHomeDirectory()
{
    return TORVApplication::getUserHomeDirectory(getBgUsername());
}

QString TORVBackgroundSettings::getBgSettingsDirectory()
{
    return TORVApplication::getUserSettingsDirectory(getBgUsername());
}

QString TORVBackgroundSettings::getBgSettingsFileName()
{
    const QString directory = getBgSettingsDirectory();
    if (directory.isEmpty()) {
        return {};
    }
    return directory + QDir::separator() + TORVApplication::BG_SERVICE_NAME + QLatin1String(".conf");
}

TORVBackgroundSettings::Status TORVBackgroundSettings::status() const
{
    const QFileInfo file(_path);
    if (_path.isEmpty()) {
        return STATUS_NONE;
    }
    if (!file.exists() && !file.isSymLink()) {
        return canBeCreated(_path) ? STATUS_WRITABLE : STATUS_NONE;
    }
    if (!file.isFile()) {
        return STATUS_NONE;
    }
    if (canBeOpened(_path, QIODevice::ReadWrite)) {
        return STATUS_WRITABLE;
    }
    return canBeOpened(_path, QIODevice::ReadOnly) ? STATUS_READABLE : STATUS_NONE;
}

void TORVBackgroundSettings::load()
{
    for (const Row& row : rows()) {
        row.field.reset(_values);
    }
    _values.products.clear();
    // Anything else than a file could keep the reader waiting.
    if (QFileInfo(_path).isFile()) {
        const auto settings = openSettings(_path);
        for (const Row& row : rows()) {
            row.field.read(settings->value(row.field.key()), _values);
        }
        _values.products = readProducts(*settings);
        TORVLog::Instance()->logDebug(
            QStringLiteral("Loading background settings from %1, status: %2").arg(_path).arg(settings->status()));
    }
    _stored = _values;
}

bool TORVBackgroundSettings::save() const
{
    TORVLog::Instance()->logDebug(QLatin1String("Saving background settings to ") + _path);
    bool isSaved = status() == STATUS_WRITABLE;
    if (isSaved) {
        const bool isNew = !QFile::exists(_path);
        const auto settings = openSettings(_path);
        for (const Row& row : rows()) {
            row.field.save(*settings, _values, _stored);
        }
        if (_values.products != _stored.products || !settings->childGroups().contains(ProductArray)) {
            writeProducts(*settings, _values.products);
        }
        settings->sync();
        isSaved = settings->status() == QSettings::NoError;
        if (isSaved && isNew) {
            QFile::setPermissions(_path, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup | QFile::ReadOther);
        }
    }
    if (isSaved) {
        _stored = _values;
        return true;
    }
    TORVLog::Instance()->logWarning(QLatin1String("Background settings not writable: ") + _path);
    TORVLog::Instance()->logHistory(QCoreApplication::translate("App", "Background settings not writable."));
    return false;
}

void TORVBackgroundSettings::reset(const QStringList& configurations)
{
    for (const Row& row : rows()) {
        if (row.isReset) {
            row.field.reset(_values);
        }
    }
    _values.products.clear();
    for (const QString& configuration : configurations) {
        _values.products.insert(configuration, DefaultProduct);
    }
}

QStringList TORVBackgroundSettings::getAllConfigurations(const TORV3DTop& volumes)
{
    QStringList names;
    const QStringList withConfigurations = volumes.listProductsForSite(AnySite, true);
    const QStringList products = volumes.listProductsForSite(AnySite, false);
    for (const QString& product : products) {
        const QString prefix = product + QLatin1String(" - ");
        for (const QString& name : withConfigurations) {
            names << (name.startsWith(prefix) ? name.mid(prefix.size()) : QString());
        }
    }
    return inOrder(names);
}

QStringList TORVBackgroundSettings::getAll2DProducts(const TORV2DTop& flatProducts)
{
    return inOrder(flatProducts.listProductsForSite(AnySite, false));
}

QString TORVBackgroundSettings::get2DProduct(const QString& configuration) const
{
    return _values.products.value(configuration, DefaultProduct);
}

void TORVBackgroundSettings::set2DProduct(const QString& configuration, const QString& product)
{
    _values.products.insert(configuration, product);
}

QString TORVBackgroundSettings::getDisplayStateName() const
{
    return nameToUser(_values.displayStateName);
}

void TORVBackgroundSettings::setDisplayStateName(const QString& name)
{
    _values.displayStateName = nameFromUser(name);
}

QString TORVBackgroundSettings::getViewAngleName() const
{
    return nameToUser(_values.viewAngleName);
}

void TORVBackgroundSettings::setViewAngleName(const QString& name)
{
    _values.viewAngleName = nameFromUser(name);
}
