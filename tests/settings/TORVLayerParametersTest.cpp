#include "settings/TORVLayerParameters.h"

#include "datalib/TORVDataType.h"
#include "datalib/TORVLandmarkSet.h"
#include "datalib/TORVTerrainSet.h"

#include "support/LogFile.h"
#include "support/ProductFiles.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <vector>

namespace
{

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

TORVGeoProjection::CPtr projection()
{
    return boost::make_shared<TORVGeoProjection>(QStringLiteral("aeqd"), TORVCoordinate(60.25, 25.5), 6371000.0, 300.0);
}

boost::shared_ptr<const TORVTerrainSet> terrain()
{
    return boost::make_shared<TORVTerrainSet>(projection(), TORVCoordinate(58.0, 23.0), TORVCoordinate(62.0, 28.0));
}

TORVLandmarkSet::CPtr landmarks()
{
    return boost::make_shared<TORVLandmarkSet>(TORVCoordinate(60.25, 25.5), TORVCoordinate(58.0, 23.0),
                                               TORVCoordinate(62.0, 28.0));
}

/// Each change alone must count, in both directions, and nothing else.
template <class Parameters>
void expectEachToCount(const std::vector<std::function<void(Parameters&)>>& changes)
{
    EXPECT_FALSE(Parameters().hasChanged(Parameters()));
    for (std::size_t i = 0; i < changes.size(); ++i) {
        Parameters changed;
        changes[i](changed);
        EXPECT_TRUE(changed.hasChanged(Parameters())) << "change " << i;
        EXPECT_TRUE(Parameters().hasChanged(changed)) << "change " << i;
        const Parameters copy(changed);
        EXPECT_FALSE(copy.hasChanged(changed)) << "copy of change " << i;
    }
}

template <class Parameters>
QStringList dumpOf(const Parameters& parameters)
{
    const LogFile log(TORVLog::LEVEL_DEBUG);
    parameters.printDebug();
    QStringList lines;
    for (const QString& line : log.lines()) {
        lines << line.mid(3); // behind the level's mark
    }
    return lines;
}

class TORVLayerParametersFileTest : public testing::Test
{
protected:
    struct Product
    {
        QByteArray site = "HALMERA";
        QString time = QStringLiteral("260714120000");
        uint16_t productType = 3; // CAPPI
        uint16_t dataType = 2;    // Z
    };

    // Each in a directory of its own, so that names may be the same.
    TORVFile::CPtr open(const Product& product)
    {
        TORVProductFields fields = ProductFiles::small();
        fields.siteName = product.site;
        fields.productType = product.productType;
        fields.dataType = product.dataType;
        directories.push_back(std::make_unique<ProductFiles>());
        const QString name = QStringLiteral("HAL%1.CAPZ").arg(product.time);
        return TORVFile::openChecked(directories.back()->write(name, fields));
    }

    std::vector<TORVFile::CPtr> others()
    {
        Product site;
        site.site = "OTHER";
        Product time;
        time.time = QStringLiteral("260714120500");
        Product product;
        product.productType = 1; // PPI
        Product configuration;
        configuration.dataType = 4; // W
        return {open(site), open(time), open(product), open(configuration)};
    }

    template <class Parameters>
    Parameters with(const TORVFile::CPtr& file)
    {
        Parameters parameters;
        parameters.setDataFile(file);
        return parameters;
    }

    template <class Parameters>
    void expectComparisonByWhatTheFileIs()
    {
        const auto file = with<Parameters>(open({}));
        EXPECT_FALSE(with<Parameters>(open({})).hasChanged(file)); // a second object
        EXPECT_TRUE(with<Parameters>({}).hasChanged(file));
        EXPECT_TRUE(file.hasChanged(with<Parameters>({})));
        EXPECT_FALSE(with<Parameters>({}).hasChanged(with<Parameters>({})));
        for (const TORVFile::CPtr& other : others()) {
            EXPECT_TRUE(with<Parameters>(other).hasChanged(file)) << qUtf8Printable(other->getPath());
        }
    }

    std::vector<std::unique_ptr<ProductFiles>> directories;
};

} // namespace

TEST(TORVLayerParametersTest, TheBaseNeverChanges)
{
    EXPECT_FALSE(TORVLayerParameters().hasChanged(TORVLayerParameters()));
    EXPECT_FALSE(TORVLayerParameters().hasChanged(TORVLayerParameters3d()));
    EXPECT_EQ(dumpOf(TORVLayerParameters()), QStringList(QStringLiteral("TORVLayerParameters: (no data)")));
}

TEST(TORVLayerParametersTest, AnotherClassIsNoChange)
{
    TORVLayerParameters3d volume;
    volume.setDataShrinkH(9);
    TORVLayerParameters3dOutline outline;
    outline.setDataHeight(1.0);
    EXPECT_FALSE(TORVLayerParameters2d().hasChanged(volume));
    EXPECT_FALSE(volume.hasChanged(TORVLayerParameters2d()));
    EXPECT_FALSE(outline.hasChanged(volume));
    EXPECT_FALSE(volume.hasChanged(TORVLayerParameters()));
}

TEST(TORVLayerParametersTest, VolumesStartWithTheTablesDefaults)
{
    const TORVLayerParameters3d parameters;
    EXPECT_FALSE(parameters.getDataFile());
    EXPECT_EQ(parameters.getRenderingType(), TORVProductSettings::SURFACE);
    EXPECT_EQ(parameters.getColorScaleName(), QStringLiteral("Default"));
    EXPECT_EQ(parameters.getDataShrinkH(), 4);
    EXPECT_EQ(parameters.getDataShrinkV(), 1);
    EXPECT_EQ(parameters.getDataSmooth(), 1.0);
    EXPECT_TRUE(parameters.getSurfacePars().isEmpty());
    EXPECT_EQ(parameters.getVolumeValueLow(), -9999.0);
    EXPECT_EQ(parameters.getVolumeOpacityLow(), 1.0);
    EXPECT_EQ(parameters.getVolumeValueHigh(), 9999.0);
    EXPECT_EQ(parameters.getVolumeOpacityHigh(), 100.0);
}

TEST(TORVLayerParametersTest, VolumesChangeWithEveryField)
{
    using P = TORVLayerParameters3d;
    expectEachToCount<P>({[](P& p) { p.setRenderingType(TORVProductSettings::VOLUME); },
                          [](P& p) { p.setColorScaleName(QStringLiteral("default")); },
                          [](P& p) { p.setDataShrinkH(5); }, [](P& p) { p.setDataShrinkV(2); },
                          [](P& p) { p.setDataSmooth(1.0000001); },
                          [](P& p) {
                              p.setSurfacePars({{20.0, 100}});
                          },
                          [](P& p) { p.setVolumeValueLow(0.0); }, [](P& p) { p.setVolumeOpacityLow(0.0); },
                          [](P& p) { p.setVolumeValueHigh(0.0); }, [](P& p) { p.setVolumeOpacityHigh(0.0); }});
}

TEST(TORVLayerParametersTest, SurfacesDifferInNumberValueAndOpacity)
{
    const auto surfaces = [](const QMap<double, int>& pars) {
        TORVLayerParameters3d parameters;
        parameters.setSurfacePars(pars);
        return parameters;
    };
    const TORVLayerParameters3d two = surfaces({{20.0, 30}, {40.0, 100}});
    EXPECT_FALSE(surfaces({{40.0, 100}, {20.0, 30}}).hasChanged(two));
    EXPECT_TRUE(surfaces({{20.0, 31}, {40.0, 100}}).hasChanged(two));
    EXPECT_TRUE(surfaces({{20.5, 30}, {40.0, 100}}).hasChanged(two));
    EXPECT_TRUE(surfaces({{20.0, 30}}).hasChanged(two));
    EXPECT_TRUE(surfaces({{20.0, 30}, {40.0, 100}, {50.0, 100}}).hasChanged(two));
}

TEST(TORVLayerParametersTest, NoNumberDiffersFromItself)
{
    TORVLayerParameters3d value;
    value.setDataSmooth(NaN);
    EXPECT_TRUE(value.hasChanged(value));
    TORVLayerParameters3d key;
    key.setSurfacePars({{NaN, 100}});
    EXPECT_TRUE(key.hasChanged(key));
    TORVLayerParametersRadarRings rings;
    rings.setRange(NaN);
    EXPECT_TRUE(rings.hasChanged(rings));
}

// Velocity of one byte with 32 m/s (1000 / 40000 cm/Hz * 1280): stored 1 is -32, stored 254 is 126 / 127 of 32.
TEST(TORVLayerParametersTest, ResetStandsAtTheTypesMinimum)
{
    const TORVDataType velocity(3, 1280, 0, 1000, 0);
    TORVLayerParameters3d parameters;
    parameters.resetPars(&velocity);
    EXPECT_EQ(parameters.getVolumeValueLow(), -32.0);
    EXPECT_DOUBLE_EQ(parameters.getVolumeValueHigh(), 32.0 * 126.0 / 127.0 * 0.7);
    EXPECT_EQ(parameters.getSurfacePars(), (QMap<double, int>{{-32.0, 100}}));
}

// Reflectivity of one byte: (1 - 64) / 2 = -31.5 to (254 - 64) / 2 = 95.
TEST(TORVLayerParametersTest, ResetLeavesTheFileAlone)
{
    const ProductFiles files;
    const TORVFile::CPtr file =
        TORVFile::openChecked(files.write(QStringLiteral("HAL260714120000.CAPZ"), ProductFiles::small()));
    TORVLayerParameters3d parameters;
    parameters.setDataFile(file);
    parameters.setRenderingType(TORVProductSettings::VOLUME);
    parameters.setColorScaleName(QStringLiteral("Other"));
    parameters.setDataShrinkH(1);
    parameters.setDataShrinkV(3);
    parameters.setDataSmooth(0.5);
    parameters.setSurfacePars({{20.0, 30}, {40.0, 100}});
    parameters.setVolumeOpacityLow(12.0);
    parameters.setVolumeOpacityHigh(34.0);
    const TORVDataType reflectivity(2);
    parameters.resetPars(&reflectivity);
    EXPECT_EQ(parameters.getDataFile(), file);
    EXPECT_EQ(parameters.getSurfacePars(), (QMap<double, int>{{-31.5, 100}}));
    EXPECT_EQ(parameters.getVolumeValueLow(), -31.5);
    EXPECT_DOUBLE_EQ(parameters.getVolumeValueHigh(), 66.5);
    TORVLayerParameters3d expected;
    expected.setDataFile(file);
    expected.setSurfacePars(parameters.getSurfacePars());
    expected.setVolumeValueLow(parameters.getVolumeValueLow());
    expected.setVolumeValueHigh(parameters.getVolumeValueHigh());
    EXPECT_FALSE(parameters.hasChanged(expected)); // the rest is as at the start
}

TEST(TORVLayerParametersTest, ResetWithoutATypeTakesNumbersFarOut)
{
    TORVLayerParameters3d parameters;
    parameters.setVolumeValueLow(1.0);
    parameters.setVolumeValueHigh(2.0);
    parameters.resetPars(nullptr);
    EXPECT_EQ(parameters.getVolumeValueLow(), -9999.0);
    EXPECT_EQ(parameters.getVolumeValueHigh(), 9999.0);
    EXPECT_EQ(parameters.getSurfacePars(), (QMap<double, int>{{-9999.0, 100}}));
}

TEST(TORVLayerParametersTest, OutlinesChangeWithEveryNumber)
{
    using P = TORVLayerParameters3dOutline;
    expectEachToCount<P>({[](P& p) { p.setSiteAltitude(1.0); }, [](P& p) { p.setDataHeight(1.0); },
                          [](P& p) { p.setTickInterval(2500.0); }});
}

TEST(TORVLayerParametersTest, RingsChangeWithPlaceRangeAndUnits)
{
    using P = TORVLayerParametersRadarRings;
    expectEachToCount<P>({[](P& p) { p.setSiteLocation(TORVCoordinate(1.0, 0.0)); },
                          [](P& p) { p.setSiteLocation(TORVCoordinate(0.0, 1.0)); }, [](P& p) { p.setRange(1.0); },
                          [](P& p) { p.setMetricUnits(true); }});
}

TEST(TORVLayerParametersTest, GridsChangeWithTheProjectionsPointerAndTheRange)
{
    using P = TORVLayerParametersLatLonGrid;
    expectEachToCount<P>({[](P& p) { p.setGeoProjection(projection()); }, [](P& p) { p.setRange(1.0); }});
    P one;
    one.setGeoProjection(projection());
    P other;
    other.setGeoProjection(projection());
    EXPECT_TRUE(one.hasChanged(other));
}

TEST(TORVLayerParametersTest, LabelsChangeWithEachPointerAndTheScale)
{
    using P = TORVLayerParametersGeoLabels;
    expectEachToCount<P>({[](P& p) { p.setLandmarkSet(landmarks()); }, [](P& p) { p.setGeoProjection(projection()); },
                          [](P& p) { p.setVerticalScale(5.0); }, [](P& p) { p.setTerrainSet(terrain()); }});
    P one;
    one.setLandmarkSet(landmarks());
    P other;
    other.setLandmarkSet(landmarks());
    EXPECT_TRUE(one.hasChanged(other));
}

TEST(TORVLayerParametersTest, TerrainChangesWithThePointer)
{
    using P = TORVLayerParametersTerrain;
    expectEachToCount<P>({[](P& p) { p.setTerrainSet(terrain()); }});
    P one;
    one.setTerrainSet(terrain());
    P other;
    other.setTerrainSet(terrain());
    EXPECT_TRUE(one.hasChanged(other));
}

TEST_F(TORVLayerParametersFileTest, VolumesCompareFilesByWhatTheyAre)
{
    expectComparisonByWhatTheFileIs<TORVLayerParameters3d>();
}

TEST_F(TORVLayerParametersFileTest, FlatProductsCompareFilesByWhatTheyAre)
{
    expectComparisonByWhatTheFileIs<TORVLayerParameters2d>();
}

TEST_F(TORVLayerParametersFileTest, VolumesDumpEveryField)
{
    TORVLayerParameters3d parameters = with<TORVLayerParameters3d>(open({}));
    parameters.setSurfacePars({{20.0, 18}, {35.5, 32}});
    parameters.setDataSmooth(0.5);
    const QStringList expected = {
        QStringLiteral("TORVLayerParameters3d: "), QStringLiteral("dataFile=HAL260714120000.CAPZ"),
        QStringLiteral("renderingType=1"),         QStringLiteral("colorScaleName=Default"),
        QStringLiteral("dataShrinkH=4"),           QStringLiteral("dataShrinkV=1"),
        QStringLiteral("dataSmooth=0.5"),          QStringLiteral("surfaceIso=20, 18"),
        QStringLiteral("surfaceIso=35.5, 32"),     QStringLiteral("volumeValueLow=-9999"),
        QStringLiteral("volumeOpacityLow=1"),      QStringLiteral("volumeValueHigh=9999"),
        QStringLiteral("volumeOpacityHigh=100")};
    EXPECT_EQ(dumpOf(parameters), expected);
}

TEST_F(TORVLayerParametersFileTest, FlatProductsDumpTheirFile)
{
    EXPECT_EQ(
        dumpOf(with<TORVLayerParameters2d>(open({}))),
        QStringList({QStringLiteral("TORVLayerParameters2d: "), QStringLiteral("dataFile=HAL260714120000.CAPZ")}));
    EXPECT_EQ(dumpOf(TORVLayerParameters2d()),
              QStringList({QStringLiteral("TORVLayerParameters2d: "), QStringLiteral("dataFile=null")}));
}

TEST(TORVLayerParametersTest, OutlinesAndRingsDumpTheirNumbers)
{
    TORVLayerParameters3dOutline outline;
    outline.setSiteAltitude(120.0);
    outline.setDataHeight(15000.0);
    EXPECT_EQ(dumpOf(outline),
              QStringList({QStringLiteral("TORVLayerParameters3dOutline: "), QStringLiteral("siteAltitude=120"),
                           QStringLiteral("dataHeight=15000"), QStringLiteral("tickInterval=1000")}));
    TORVLayerParametersRadarRings rings;
    rings.setSiteLocation(TORVCoordinate(60.25, 25.5));
    rings.setRange(240000.0);
    rings.setMetricUnits(true);
    EXPECT_EQ(dumpOf(rings), QStringList({QStringLiteral("TORVLayerParametersRadarRings: "),
                                          QStringLiteral("siteLocation=60.25, 25.5"), QStringLiteral("range=240000"),
                                          QStringLiteral("metricUnits=true")}));
}

TEST(TORVLayerParametersTest, GridsAndLabelsDumpTheirPlace)
{
    TORVLayerParametersLatLonGrid grid;
    grid.setGeoProjection(projection());
    EXPECT_EQ(dumpOf(grid),
              QStringList({QStringLiteral("TORVLayerParametersLatLonGrid: "),
                           QStringLiteral("geoProjection=aeqd, 60.25, 25.5"), QStringLiteral("range=0")}));
    TORVLayerParametersGeoLabels labels;
    labels.setLandmarkSet(landmarks());
    const QStringList lines = dumpOf(labels);
    ASSERT_GE(lines.size(), 3);
    EXPECT_EQ(lines.at(0), QStringLiteral("TORVLayerParameters3d: ")); // as it has always read
    EXPECT_EQ(lines.at(1), QStringLiteral("refLocation=60.25, 25.5"));
    EXPECT_EQ(lines.at(2), QStringLiteral("geoProjection=null"));
}

TEST(TORVLayerParametersTest, TerrainDumpsItsBounds)
{
    TORVLayerParametersTerrain parameters;
    parameters.setTerrainSet(terrain());
    EXPECT_EQ(dumpOf(parameters),
              QStringList({QStringLiteral("TORVLayerParameters3d: "), QStringLiteral("refLocation=60.25, 25.5"),
                           QStringLiteral("minLoc=58, 23"), QStringLiteral("maxLoc=62, 28")}));
    EXPECT_EQ(dumpOf(TORVLayerParametersTerrain()),
              QStringList({QStringLiteral("TORVLayerParameters3d: "), QStringLiteral("refLocation=null")}));
}
