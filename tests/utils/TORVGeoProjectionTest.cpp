#include "utils/TORVGeoProjection.h"

#include "utils/TORVPoint3D.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

#include <boost/weak_ptr.hpp>

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <thread>

namespace
{

const QString Aeqd = QStringLiteral("aeqd");
const QString Merc = QStringLiteral("merc");
constexpr double Sphere = std::numeric_limits<float>::max();
constexpr double MeanRadius = 6371000.0;

// The program's pi is a little short, so it hands PROJ a position that is short by this ratio.
constexpr double PiRatio = 3.14159265 / 3.14159265358979323846;

struct Place
{
    double lat;
    double lon;
};

// A hundred places within 250 km of a radar, in a fixed pattern.
std::vector<Place> placesAround(double lat, double lon)
{
    std::vector<Place> places;
    for (int i = 0; i < 10; ++i) {
        for (int j = 0; j < 10; ++j) {
            places.push_back({lat + (i - 4.5) * 0.45, lon + (j - 4.5) * 0.45 / std::cos(lat * M_PI / 180.0)});
        }
    }
    return places;
}

// The same by PROJ's own program, which shares no code of ours.
std::vector<TORVPoint3D> byCs2cs(const QString& definition, const QString& ellipsoid, const std::vector<Place>& places)
{
    QProcess cs2cs;
    cs2cs.start(QStringLiteral("cs2cs"),
                QStringList{QStringLiteral("-f"), QStringLiteral("%.6f")} +
                    (QStringLiteral("+proj=longlat +no_defs ") + ellipsoid).split(QLatin1Char(' ')) +
                    QStringList{QStringLiteral("+to")} +
                    (definition + QStringLiteral(" +no_defs ") + ellipsoid).split(QLatin1Char(' ')));
    EXPECT_TRUE(cs2cs.waitForStarted());
    for (const Place& place : places) {
        cs2cs.write(QByteArray::number(place.lon * PiRatio, 'f', 15) + ' ' +
                    QByteArray::number(place.lat * PiRatio, 'f', 15) + '\n');
    }
    cs2cs.closeWriteChannel();
    EXPECT_TRUE(cs2cs.waitForFinished());
    std::vector<TORVPoint3D> points;
    QTextStream lines(cs2cs.readAllStandardOutput());
    while (points.size() < places.size() && !lines.atEnd()) {
        TORVPoint3D point;
        lines >> point.x >> point.y >> point.z >> Qt::ws;
        points.push_back(point);
    }
    EXPECT_EQ(points.size(), places.size());
    return points;
}

struct ProjectionCase
{
    const char* type;
    double lat;
    double lon;
    double radius;
    double invFlattening;
};

class TORVGeoProjectionCase : public testing::TestWithParam<ProjectionCase>
{
protected:
    TORVGeoProjection make() const
    {
        const ProjectionCase& c = GetParam();
        return TORVGeoProjection(QLatin1String(c.type), TORVCoordinate(c.lat, c.lon), c.radius, c.invFlattening);
    }
};

} // namespace

TEST_P(TORVGeoProjectionCase, AgreesWithCs2csOnAHundredPlaces)
{
    const ProjectionCase& c = GetParam();
    const TORVGeoProjection projection = make();
    const QString ellipsoid =
        c.invFlattening == Sphere
            ? QStringLiteral("+R=%1").arg(c.radius, 0, 'f', 3)
            : QStringLiteral("+a=%1 +rf=%2").arg(c.radius, 0, 'f', 3).arg(c.invFlattening, 0, 'f', 6);
    const QString definition = QStringLiteral("+proj=%1 +lat_0=%2 +lon_0=%3")
                                   .arg(QLatin1String(c.type))
                                   .arg(c.lat, 0, 'f', 6)
                                   .arg(c.lon, 0, 'f', 6);
    const std::vector<Place> places = placesAround(c.lat, c.lon);
    const std::vector<TORVPoint3D> expected = byCs2cs(definition, ellipsoid, places);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const TORVPoint3D point = projection.projectFromLatLon(TORVCoordinate(places[i].lat, places[i].lon));
        EXPECT_NEAR(point.x, expected[i].x, 0.001) << i;
        EXPECT_NEAR(point.y, expected[i].y, 0.001) << i;
        EXPECT_EQ(point.z, 0.0);
    }
}

TEST_P(TORVGeoProjectionCase, ComesBackToWhereItStarted)
{
    const ProjectionCase& c = GetParam();
    const TORVGeoProjection projection = make();
    for (const Place& place : placesAround(c.lat, c.lon)) {
        const TORVCoordinate back =
            projection.projectToLatLon(projection.projectFromLatLon(TORVCoordinate(place.lat, place.lon)));
        EXPECT_NEAR(back.getLat(), place.lat, 1e-8);
        EXPECT_NEAR(back.getLon(), place.lon, 1e-8);
    }
}

INSTANTIATE_TEST_SUITE_P(Radars, TORVGeoProjectionCase,
                         testing::Values(ProjectionCase{"aeqd", 46.0408, 8.8332, MeanRadius, Sphere},
                                         ProjectionCase{"aeqd", 35.3331, -97.2778, MeanRadius, Sphere},
                                         ProjectionCase{"aeqd", -33.70, 151.21, MeanRadius, Sphere},
                                         ProjectionCase{"aeqd", 68.0, 25.0, 6378137.0, 298.257224},
                                         ProjectionCase{"merc", 46.0408, 8.8332, MeanRadius, Sphere},
                                         ProjectionCase{"merc", 60.0, 25.0, 6378137.0, 298.257224}));

TEST(TORVGeoProjection, KeepsItsDefinition)
{
    const TORVGeoProjection projection(Aeqd, TORVCoordinate(60.0, 25.0), 6378137.0, 298.257);
    EXPECT_EQ(projection.getType(), Aeqd);
    EXPECT_EQ(projection.getCentre().getLat(), 60.0);
    EXPECT_EQ(projection.getCentre().getLon(), 25.0);
    EXPECT_EQ(projection.getRadius(), 6378137.0);
    EXPECT_EQ(projection.getInvFlattening(), 298.257);
}

TEST(TORVGeoProjection, HasItsOriginAtTheCentre)
{
    const TORVGeoProjection projection(Aeqd, TORVCoordinate(46.0408, 8.8332), MeanRadius, Sphere);
    const TORVPoint3D origin = projection.projectFromLatLon(TORVCoordinate(46.0408, 8.8332));
    // The short pi moves a position at 46 degrees by 46.04 / 180 * 3.59e-9 * 6371000 m = 6 mm, no more.
    EXPECT_NEAR(origin.x, 0.0, 0.02);
    EXPECT_NEAR(origin.y, 0.0, 0.02);
}

TEST(TORVGeoProjection, GivesAPointOfInfiniteHeightAPlace)
{
    const TORVGeoProjection projection(Aeqd, TORVCoordinate(46.0, 8.0), MeanRadius, Sphere);
    const TORVCoordinate place = projection.projectToLatLon({0.0, 0.0, INFINITY});
    EXPECT_NEAR(place.getLat(), 46.0, 1e-6);
}

TEST(TORVGeoProjection, FindsPlacesBeyondThePole)
{
    // From 80 N 20 E 1500 km north: 10 degrees to the pole are 1111.95 km on this sphere, so it lies 388.05 km = 3.4898
    // degrees behind it, on the meridian 20 - 180 = -160.
    const TORVGeoProjection projection(Aeqd, TORVCoordinate(80.0, 20.0), MeanRadius, Sphere);
    const TORVCoordinate place = projection.projectToLatLon({0.0, 1500000.0, 0.0});
    EXPECT_NEAR(place.getLon(), -160.0, 1e-6);
    EXPECT_NEAR(place.getLat(), 90.0 - (1500000.0 / MeanRadius * 180.0 / M_PI - 10.0), 1e-6);
    const TORVPoint3D back = projection.projectFromLatLon(projection.projectToLatLon({800000.0, 1200000.0, 0.0}));
    EXPECT_NEAR(back.x, 800000.0, 0.01);
    EXPECT_NEAR(back.y, 1200000.0, 0.01);
}

TEST(TORVGeoProjection, AnswersFromThePoleItself)
{
    const TORVGeoProjection projection(Aeqd, TORVCoordinate(90.0, 0.0), MeanRadius, Sphere);
    const TORVCoordinate south = projection.projectToLatLon({0.0, -12000000.0, 0.0}); // beyond the equator
    EXPECT_LT(south.getLat(), 0.0);
    EXPECT_NEAR(south.getLon(), 0.0, 1e-6);
}

TEST(TORVGeoProjection, KeepsLongitudesWithinTheDateLine)
{
    const TORVGeoProjection projection(Aeqd, TORVCoordinate(0.0, 179.5), MeanRadius, Sphere);
    const TORVCoordinate place = projection.projectToLatLon({111194.9, 0.0, 0.0}); // one degree east
    EXPECT_NEAR(place.getLon(), -179.5, 1e-5);
}

TEST(TORVGeoProjection, IsRightUnderACommaLocale)
{
    const QTemporaryDir directory;
    const QString name = QStringLiteral("fi_FI.UTF-8");
    const int made = QProcess::execute(QStringLiteral("localedef"),
                                       {QStringLiteral("-f"), QStringLiteral("UTF-8"), QStringLiteral("-i"),
                                        QStringLiteral("fi_FI"), directory.filePath(name)});
    if (made < 0 || made > 1) {
        GTEST_SKIP() << "localedef can't make a Finnish locale here";
    }
    qputenv("LOCPATH", directory.path().toLocal8Bit());
    if (!std::setlocale(LC_ALL, "fi_FI.UTF-8")) {
        GTEST_SKIP() << "there is no Finnish locale";
    }
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    const TORVGeoProjection projection(Aeqd, TORVCoordinate(46.0408, 8.8332), MeanRadius, Sphere);
    const TORVPoint3D origin = projection.projectFromLatLon(TORVCoordinate(46.0408, 8.8332));
    std::setlocale(LC_ALL, "C");
    EXPECT_NEAR(origin.x, 0.0, 0.02);
    EXPECT_NEAR(origin.y, 0.0, 0.02);
}

TEST(TORVGeoProjection, SharesEqualDefinitionsWhileTheyLive)
{
    const TORVCoordinate site(60.0, 25.0);
    TORVGeoProjection::CPtr first = TORVGeoProjection::shared(Aeqd, site, MeanRadius, Sphere);
    EXPECT_EQ(first, TORVGeoProjection::shared(Aeqd, site, MeanRadius, Sphere));
    EXPECT_NE(first, TORVGeoProjection::shared(Merc, site, MeanRadius, Sphere));
    EXPECT_NE(first, TORVGeoProjection::shared(Aeqd, site, MeanRadius + 1.0, Sphere));
    EXPECT_NE(first, TORVGeoProjection::shared(Aeqd, site, MeanRadius, 298.0));
    EXPECT_NE(first, TORVGeoProjection::shared(Aeqd, TORVCoordinate(60.0, 25.1), MeanRadius, Sphere));
    const boost::weak_ptr<const TORVGeoProjection> watched(first);
    first.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(TORVGeoProjection, ServesManyThreadsAtOnce)
{
    const TORVGeoProjection projection(Aeqd, TORVCoordinate(60.0, 25.0), MeanRadius, Sphere);
    const TORVPoint3D expected = projection.projectFromLatLon(TORVCoordinate(61.0, 26.0));
    std::vector<int> wrong(8, 0);
    std::vector<std::thread> threads;
    for (int& count : wrong) {
        threads.emplace_back([&projection, &expected, &count] {
            for (int i = 0; i < 2000; ++i) {
                const TORVPoint3D point = projection.projectFromLatLon(TORVCoordinate(61.0, 26.0));
                count += point.x != expected.x || point.y != expected.y;
                TORVGeoProjection::shared(Aeqd, TORVCoordinate(60.0, i % 3), MeanRadius, Sphere);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, std::vector<int>(8, 0));
}

TEST(TORVGeoProjectionDeathTest, StopsAtAnIllegalDefinition)
{
    const TORVCoordinate site(60.0, 25.0);
    EXPECT_DEATH(TORVGeoProjection(QString(), site, MeanRadius, Sphere), "Assertion `0' failed");
    EXPECT_DEATH(TORVGeoProjection(Aeqd, site, 0.0, Sphere), "Assertion `0' failed");
    EXPECT_DEATH(TORVGeoProjection(Aeqd, site, MeanRadius, 0.0), "Assertion `0' failed");
    EXPECT_DEATH(TORVGeoProjection(Aeqd, TORVCoordinate(90.5, 0.0), MeanRadius, Sphere), "Assertion `0' failed");
}

TEST(TORVGeoProjectionDeathTest, StopsAtADefinitionThatProjRefuses)
{
    EXPECT_DEATH(TORVGeoProjection(QStringLiteral("nothing"), TORVCoordinate(60.0, 25.0), MeanRadius, Sphere),
                 "Assertion `0' failed");
}

TEST(TORVGeoProjectionDeathTest, StopsAtAPointThatCannotBeTransformed)
{
    const TORVGeoProjection projection(Aeqd, TORVCoordinate(60.0, 25.0), MeanRadius, Sphere);
    EXPECT_DEATH(projection.projectToLatLon({std::nan(""), 0.0, 0.0}), "Assertion `0' failed");
}
