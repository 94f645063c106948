// What a colour map reads from the installation's colour file.

#include "datalib/TORVDataType.h"
#include "utils/TORVLog.h"
#include "utils/TORVSettingsReader.h"
#include "visualization/TORVColormap.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
#include <QSettings>
#include <QStringList>
#include <QVariant>

#include <vtkColorTransferFunction.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <mutex>
#include <set>
#include <tuple>

namespace
{

constexpr const char* FileName = "TORV3DColors";
constexpr const char* ScaleGroup = "COLORSCALE";
constexpr const char* DefaultName = "default";
constexpr const char* DefaultUnits = "N/A";
constexpr const char* DefaultLabelFormat = "3.0f";
constexpr int DefaultId = 1;
constexpr int LargestId = std::numeric_limits<int>::max();
constexpr int LargestDataType = 65535;
constexpr const char* BuiltInText =
    QT_TRANSLATE_NOOP("TORVColormap", "Colour scale %1 can't be used, built-in colours are shown: %2");
// More than a screen has lines.
constexpr int MaxPoints = 2048;
// Far beyond all units, and small enough for the arithmetic of the map.
constexpr double LargestSeam = 1e9;
// Texts of the file end up in windows and pictures.
constexpr int MaxTextLength = 80;

std::unique_ptr<QSettings> openFile()
{
    auto settings = std::make_unique<QSettings>(QCoreApplication::organizationName(), QString::fromLatin1(FileName));
    // Before the first value is looked at: Qt decodes a file once in a process.
    settings->setIniCodec("UTF-8");
    return settings;
}

// The user's file, unless only the system has one.
QString fileNameOf(const QSettings& settings)
{
    const QSettings system(QSettings::SystemScope, settings.organizationName(), settings.applicationName());
    return !QFile::exists(settings.fileName()) && QFile::exists(system.fileName()) ? system.fileName()
                                                                                   : settings.fileName();
}

// Whether something is said of a file for the first time in the process.
bool isNews(const QString& text)
{
    static std::mutex mutex;
    static std::set<QString> told;
    const std::lock_guard<std::mutex> lock(mutex);
    return told.insert(text).second;
}

void warnOnce(const QString& text, const QString& fileName)
{
    if (isNews(fileName + text)) {
        TORVLog::Instance()->logWarning(text);
    }
}

void reportBuiltIn(int id, const QString& fileName)
{
    const QString text = QString::fromLatin1(BuiltInText).arg(id).arg(fileName);
    if (isNews(text)) {
        TORVLog::Instance()->logWarning(text);
        TORVLog::Instance()->logHistory(QCoreApplication::translate("TORVColormap", BuiltInText).arg(id).arg(fileName));
    }
}

QString textOf(const QSettings& settings, const QString& key, const char* byDefault = "")
{
    return TORVSettingsReader::text(settings.value(key), QString::fromLatin1(byDefault)).left(MaxTextLength);
}

int colorOf(const QSettings& settings, const QString& key)
{
    return TORVSettingsReader::integer(settings.value(key), 0, 0, 255);
}

int groupOf(const QVariant& value)
{
    return TORVSettingsReader::integer(value, TORVColormap::None, TORVColormap::None, LargestId);
}

// The format goes into printf with one double: nothing else may pass, and no width that fills the memory.
QString checkedLabelFormat(const QString& format)
{
    static const QRegularExpression pattern(
        QRegularExpression::anchoredPattern(QStringLiteral("%?([-+ #0]{0,5}[0-9]{0,2}(\\.[0-9]{1,2})?[eEfgG])")));
    const QRegularExpressionMatch match = pattern.match(format);
    return QLatin1Char('%') + (match.hasMatch() ? match.captured(1) : QString::fromLatin1(DefaultLabelFormat));
}

bool isMeant(double seam)
{
    return std::isfinite(seam) && std::abs(seam) <= LargestSeam;
}

QVector<int> pointsOf(QSettings& settings)
{
    return TORVSettingsReader::arrayIndexes(settings, settings.beginReadArray(QStringLiteral("points")))
        .mid(0, MaxPoints);
}

QString groupName(int id)
{
    return QStringLiteral("%1 %2").arg(QLatin1String(ScaleGroup)).arg(id);
}

// Numbers of all scales, ascending.
QVector<int> scaleNumbers(const QSettings& settings)
{
    QVector<int> numbers;
    for (const QString& group : settings.childGroups()) {
        const int number = group.section(QLatin1Char(' '), 1).toInt();
        // Other ways to write the number ("01") name groups that are not looked for.
        if (group == groupName(number)) {
            numbers.append(number);
        }
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

QVariant mappingValue(QSettings& settings, int dataType, const char* key)
{
    settings.beginGroup(QStringLiteral("DATAMAPPING"));
    settings.beginReadArray(QStringLiteral("data"));
    settings.setArrayIndex(dataType);
    const QVariant value = settings.value(QLatin1String(key));
    settings.endArray();
    settings.endGroup();
    return value;
}

bool isDataType(int dataType)
{
    return dataType >= 0 && dataType <= LargestDataType; // Qt takes an index below 0 for 0
}

} // namespace

TORVColormap::TORVColormap(const QString& name, const TORVDataType& type, ValueRange range, int fileCode)
{
    // A file that isn't there has no names to miss: what is said of the number is enough.
    const bool isAnyScale = !scaleNumbers(*openFile()).isEmpty();
    load(isAnyScale ? getColormapId(name, codeOf(type, fileCode)) : DefaultId);
    changeValueRange(range, type);
    construct();
}

TORVColormap::TORVColormap(int id, const TORVDataType& type, ValueRange range)
{
    load(id);
    changeValueRange(range, type);
    construct();
}

void TORVColormap::load(int id)
{
    const std::unique_ptr<QSettings> settings = openFile();
    settings->beginGroup(groupName(id));
    const int colorSet = readScale(*settings);
    settings->endGroup();
    settings->beginGroup(QStringLiteral("COLORSET %1").arg(colorSet));
    readColors(*settings);
    settings->endGroup();
    const bool isUntidy = tidySeams();
    if (nodeCount() == 0) {
        useBuiltIn();
        reportBuiltIn(id, fileNameOf(*settings));
    } else if (isUntidy) {
        warnOnce(QStringLiteral("Seams of colour scale %1 are no numbers or out of order: %2")
                     .arg(id)
                     .arg(fileNameOf(*settings)),
                 QString());
    }
}

int TORVColormap::readScale(QSettings& settings)
{
    _valueRange = DISPLAY_VALUES;
    _scaleName = textOf(settings, QStringLiteral("name"), DefaultName);
    _lowSaturate = TORVSettingsReader::flag(settings.value(QStringLiteral("low_saturate")), false);
    _hiSaturate = TORVSettingsReader::flag(settings.value(QStringLiteral("hi_saturate")), true);
    _labelFormat = checkedLabelFormat(textOf(settings, QStringLiteral("label_format"), DefaultLabelFormat));
    _dataUnits = textOf(settings, QStringLiteral("data_units"), DefaultUnits);
    for (const int index : pointsOf(settings)) {
        settings.setArrayIndex(index);
        bool isNumber = false;
        const double seam = settings.value(QStringLiteral("seam"), 1.0).toDouble(&isNumber);
        _scale.push_back(isNumber ? seam : std::numeric_limits<double>::quiet_NaN());
    }
    settings.endArray();
    return TORVSettingsReader::integer(settings.value(QStringLiteral("colorset_index")), DefaultId, 0, LargestId);
}

void TORVColormap::readColors(QSettings& settings)
{
    const QString space = textOf(settings, QStringLiteral("colorspace"), "RGB");
    _colorSpace = space == QLatin1String("RGB") ? VTK_CTF_RGB : VTK_CTF_HSV;
    _colorSetName = textOf(settings, QStringLiteral("name"), DefaultName);
    const QVector<int> indexes = pointsOf(settings);
    for (int i = 0; i < indexes.size(); ++i) {
        settings.setArrayIndex(indexes.at(i));
        Point point{colorOf(settings, QStringLiteral("lower/r")),
                    colorOf(settings, QStringLiteral("lower/g")),
                    colorOf(settings, QStringLiteral("lower/b")),
                    colorOf(settings, QStringLiteral("upper/r")),
                    colorOf(settings, QStringLiteral("upper/g")),
                    colorOf(settings, QStringLiteral("upper/b")),
                    false};
        point.isConstant =
            std::tie(point.lowerR, point.lowerG, point.lowerB) == std::tie(point.upperR, point.upperG, point.upperB);
        _colors.push_back(point);
        const bool isFirst = i == 0;
        const bool isLast = i + 1 == indexes.size();
        if (isFirst || !isLast) {
            noteBand(point.isConstant, isFirst);
        }
    }
    settings.endArray();
}

void TORVColormap::noteBand(bool isConstant, bool isFirst)
{
    const int kind = isConstant ? CONSTANT : LINEAR;
    if (isFirst) {
        _interpolation = kind;
    } else if (kind != _interpolation) {
        _interpolation = MIXED;
    }
}

// Ascending seams that are numbers, each with the colour it had. Of equal seams the last one counts.
bool TORVColormap::tidySeams()
{
    struct Band
    {
        double seam;
        Point point;
    };
    const std::size_t paired = nodeCount();
    std::vector<Band> bands;
    for (std::size_t i = 0; i < paired; ++i) {
        if (isMeant(_scale[i])) {
            bands.push_back({_scale[i], _colors[i]});
        }
    }
    const auto isBelow = [](const Band& one, const Band& other) { return one.seam < other.seam; };
    std::stable_sort(bands.begin(), bands.end(), isBelow);
    std::vector<double> scale;
    std::vector<Point> colors;
    for (const Band& band : bands) {
        if (!scale.empty() && scale.back() == band.seam) {
            colors.back() = band.point;
            continue;
        }
        scale.push_back(band.seam);
        colors.push_back(band.point);
    }
    for (std::size_t i = paired; i < _scale.size() && !scale.empty(); ++i) {
        if (isMeant(_scale[i]) && _scale[i] > scale.back()) {
            scale.push_back(_scale[i]);
        }
    }
    colors.insert(colors.end(), _colors.begin() + static_cast<std::ptrdiff_t>(paired), _colors.end());
    const bool isUntidy = scale != _scale;
    _scale = scale;
    _colors = colors;
    return isUntidy;
}

int TORVColormap::codeOf(const TORVDataType& type, int fileCode)
{
    return type.getRawType() == None ? fileCode : type.getRawType();
}

int TORVColormap::getColorGroupIdForDataType(int dataType)
{
    return isDataType(dataType) ? groupOf(mappingValue(*openFile(), dataType, "data_index")) : None;
}

TORVColormap::DataTypeLegendInfo TORVColormap::getDataTypeLegendInfo(int dataType)
{
    if (!isDataType(dataType)) {
        return {};
    }
    const std::unique_ptr<QSettings> settings = openFile();
    const auto text = [&](const char* key) {
        return TORVSettingsReader::text(mappingValue(*settings, dataType, key), QString()).left(MaxTextLength);
    };
    return {text("name"), text("type"), TORVSettingsReader::flag(mappingValue(*settings, dataType, "linear"), false)};
}

QVector<TORVColormap::ColorScaleListItem> TORVColormap::getScalesForDataType(int dataType)
{
    QVector<ColorScaleListItem> items;
    const int colorGroup = getColorGroupIdForDataType(dataType);
    if (colorGroup == None) {
        return items;
    }
    const std::unique_ptr<QSettings> settings = openFile();
    for (const int number : scaleNumbers(*settings)) {
        settings->beginGroup(groupName(number));
        if (groupOf(settings->value(QStringLiteral("data_index"))) == colorGroup) {
            items.append({textOf(*settings, QStringLiteral("name"), DefaultName), number});
        }
        settings->endGroup();
    }
    return items;
}

int TORVColormap::getColormapId(const QString& name, int dataType)
{
    const QVector<ColorScaleListItem> items = getScalesForDataType(dataType);
    const auto isNamed = [&name](const ColorScaleListItem& item) { return item.name == name; };
    const auto found = std::find_if(items.begin(), items.end(), isNamed);
    if (found != items.end()) {
        return found->number;
    }
    warnOnce(QStringLiteral("COLORMAP NOT FOUND: mapname %1, type %2").arg(name, QString::number(dataType)),
             openFile()->fileName());
    return DefaultId;
}
