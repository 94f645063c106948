#include "datalib/TORVLandmarkList.h"

#include "utils/TORVLog.h"
#include "utils/TORVSettingsReader.h"

#include <QCoreApplication>
#include <QLocale>
#include <QSettings>
#include <QStringList>
#include <QTextStream>
#include <QVariant>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

const QString File = QStringLiteral("TORV3DLandmarks");
const QString Group = QStringLiteral("LANDMARKS");
const QString Array = QStringLiteral("landmarks");
const QString LabelKey = QStringLiteral("label");
const QString PriorityKey = QStringLiteral("priority");
const QString LatKey = QStringLiteral("location/lat");
const QString LonKey = QStringLiteral("location/lon");
const QString AltKey = QStringLiteral("location/alt");
const QString RedKey = QStringLiteral("color/r");
const QString GreenKey = QStringLiteral("color/g");
const QString BlueKey = QStringLiteral("color/b");

constexpr double NoPosition = -9999.9;
constexpr double HighestAltitude_m = 1e5; // what lies higher is not on this planet
constexpr double LargestNumber = std::numeric_limits<double>::max();

double realAt(const QSettings& settings, const QString& key, double byDefault)
{
    return TORVSettingsReader::real(settings.value(key), byDefault, -LargestNumber, LargestNumber);
}

double partAt(const QSettings& settings, const QString& key)
{
    return TORVSettingsReader::real(settings.value(key), 0.0, 0.0, 1.0);
}

bool isOnGlobe(double lat, double lon)
{
    return std::abs(lat) <= 90.0 && std::abs(lon) <= 180.0;
}

// Null for an entry without a position.
TORVLandmark::CPtr readEntry(const QSettings& settings)
{
    const double lat = realAt(settings, LatKey, NoPosition);
    const double lon = realAt(settings, LonKey, NoPosition);
    if (!isOnGlobe(lat, lon)) {
        return {};
    }
    const double altitude = realAt(settings, AltKey, LargestNumber);
    const bool hasAltitude = std::abs(altitude) <= HighestAltitude_m;
    const TORVLandmark::Color color = {partAt(settings, RedKey), partAt(settings, GreenKey), partAt(settings, BlueKey)};
    return boost::make_shared<TORVLandmark>(
        TORVSettingsReader::text(settings.value(LabelKey), {}), TORVCoordinate(lat, lon), hasAltitude ? altitude : 0.0,
        hasAltitude, color, TORVSettingsReader::integer(settings.value(PriorityKey), 0, 0, TORVLandmark::MaxPriority));
}

// What a comma, a quote or a line end would make something else of.
QString quoted(const QString& text)
{
    QString escaped = text;
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    escaped.replace(QLatin1Char('"'), QLatin1String("\\\""));
    escaped.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    escaped.replace(QLatin1Char('\r'), QLatin1String("\\r"));
    const bool isPlain = escaped == text && std::all_of(text.cbegin(), text.cend(), [](QChar c) {
                             return c.isLetterOrNumber() || QLatin1String(" ().-_/'").contains(c);
                         });
    return isPlain && text.trimmed() == text ? text : QLatin1Char('"') + escaped + QLatin1Char('"');
}

QString shortest(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

void printEntry(QTextStream& out, int number, const TORVLandmark& landmark)
{
    const QString prefix = Array + QLatin1Char('/') + QString::number(number) + QLatin1Char('/');
    const auto line = [&](const QString& key, const QString& value) { out << prefix << key << '=' << value << '\n'; };
    line(LabelKey, quoted(landmark.getLabel()));
    line(PriorityKey, QString::number(landmark.getPriority()));
    line(LatKey, shortest(landmark.getLocation().getLat()));
    line(LonKey, shortest(landmark.getLocation().getLon()));
    line(AltKey, shortest(landmark.getAltitude()));
    line(RedKey, shortest(landmark.getRed()));
    line(GreenKey, shortest(landmark.getGreen()));
    line(BlueKey, shortest(landmark.getBlue()));
}

bool isSame(const TORVCoordinate& a, const TORVCoordinate& b)
{
    return a.getLat() == b.getLat() && a.getLon() == b.getLon();
}

} // namespace

TORVLandmarkList::TORVLandmarkList()
{
    load();
}

void TORVLandmarkList::load()
{
    {
        const std::lock_guard<std::mutex> lock(_mutex);
        _lastSet.reset();
    }
    TORVLog* const log = TORVLog::Instance();
    const bool isTold = log->isShown(TORVLog::LEVEL_DEBUG);
    QSettings settings(QCoreApplication::organizationName(), File);
    settings.setIniCodec("UTF-8");
    _landmarks.clear();
    settings.beginGroup(Group);
    const int count = settings.beginReadArray(Array);
    log->logDebug(QStringLiteral("count=%1").arg(count));
    for (const int index : TORVSettingsReader::arrayIndexes(settings, count)) {
        settings.setArrayIndex(index);
        const TORVLandmark::CPtr landmark = readEntry(settings);
        if (!landmark) {
            continue;
        }
        if (isTold) {
            log->logDebug(QStringLiteral("Landmark: #%1").arg(index));
        }
        _landmarks.append(landmark);
    }
}

TORVLandmarkSet::Ptr TORVLandmarkList::getLandmarkSet(const TORVCoordinate& center, const TORVCoordinate& lowerLeft,
                                                      const TORVCoordinate& upperRight) const
{
    const std::lock_guard<std::mutex> lock(_mutex);
    TORVLandmarkSet::Ptr set = _lastSet.lock();
    if (!set || !isSame(set->getCenter(), center) || !isSame(set->getLowerLeft(), lowerLeft) ||
        !isSame(set->getUpperRight(), upperRight)) {
        set = makeLandmarkSet(center, lowerLeft, upperRight);
        _lastSet = set;
    }
    return set;
}

TORVLandmarkSet::Ptr TORVLandmarkList::makeLandmarkSet(const TORVCoordinate& center, const TORVCoordinate& lowerLeft,
                                                       const TORVCoordinate& upperRight) const
{
    TORVLog* const log = TORVLog::Instance();
    const bool isTold = log->isShown(TORVLog::LEVEL_DEBUG);
    auto set = boost::make_shared<TORVLandmarkSet>(center, lowerLeft, upperRight);
    for (const TORVLandmark::CPtr& landmark : _landmarks) {
        const bool isInside = set->contains(landmark->getLocation());
        if (isTold) {
            log->logDebug(QLatin1String(isInside ? "accepted: " : "rejected: ") + landmark->getLabel());
        }
        if (isInside) {
            set->append(landmark);
        }
    }
    return set;
}

void TORVLandmarkList::printIniFormat() const
{
    QTextStream out(stdout);
    out.setCodec("UTF-8");
    out << '[' << Group << "]\n" << Array << "/size=" << _landmarks.size() << '\n';
    int number = 1;
    for (const TORVLandmark::CPtr& landmark : _landmarks) {
        printEntry(out, number++, *landmark);
    }
}
