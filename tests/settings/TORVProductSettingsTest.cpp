#include "settings/TORVProductSettings.h"

#include "datalib/TORVDataType.h"
#include "settings/TORVConfig.h"

#include "support/LogFile.h"
#include "support/SandboxedHome.h"

#include <QFile>
#include <QSettings>

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <limits>
#include <thread>
#include <vector>

namespace
{

using Product = TORVProductSettings;

const QString SettingsFile = QStringLiteral(".config/Halmera/TORV3D.conf");
const QString Cappi = QStringLiteral("CAPPI");
const QString Z = QStringLiteral("Z");

// Reflectivity in one byte: -31.5 to 95 dBZ, as whole numbers -31 and 95.
const TORVDataType Reflectivity(2);
constexpr double LargestTimes07 = 95.0 * 0.7;

class TORVProductSettingsTest : public testing::Test
{
protected:
    ~TORVProductSettingsTest() override { TORVConfig::destroy(); }

    void write(const QByteArray& bytes) const { home.write(SettingsFile, bytes); }

    QByteArray file() const
    {
        QFile bytes(home.settingsFile());
        return bytes.open(QIODevice::ReadOnly) ? bytes.readAll() : QByteArray();
    }

    // What the group of the reflectivity volume makes of these lines.
    Product withLines(const QByteArray& lines) const
    {
        write("[PRODUCT%20CAPPI%20Z]\nrendering=surface\n" + lines);
        return Product(Cappi, Z, Reflectivity);
    }

    const SandboxedHome home;
};

void expectDefaults(const Product& settings)
{
    EXPECT_EQ(settings.getColorScaleName(), QLatin1String("Default"));
    EXPECT_EQ(settings.getRenderingType(), Product::SURFACE);
    EXPECT_EQ(settings.getSurfaces(), (QMap<double, int>{{-31.0, 100}}));
    EXPECT_EQ(settings.getVolumeValueLow(), -31.0);
    EXPECT_EQ(settings.getVolumeOpacityLow(), 1.0);
    EXPECT_EQ(settings.getVolumeValueHigh(), LargestTimes07);
    EXPECT_EQ(settings.getVolumeOpacityHigh(), 100.0);
}

boost::shared_ptr<Product> copyOf(const Product& settings)
{
    return boost::make_shared<Product>(settings);
}

QStringList reasonsOf(const Product& old, const boost::shared_ptr<Product>& newer)
{
    QStringList reasons;
    const bool hasChanged = old.hasChanged(newer, &reasons);
    EXPECT_EQ(hasChanged, !reasons.isEmpty());
    EXPECT_EQ(old.hasChanged(newer, nullptr), !reasons.isEmpty());
    return reasons;
}

const QByteArray EveryKey =
    "[PRODUCT%20CAPPI%20Z]\ncolormap=Rainbow\nrendering=volume\nsurface\\1\\isovalue=-5.5\n"
    "surface\\1\\opacity=10\nsurface\\2\\isovalue=40\nsurface\\2\\opacity=100\nsurface\\size=2\n"
    "volumeopacityhigh=80\nvolumeopacitylow=0.5\nvolumevaluehigh=55.5\nvolumevaluelow=10\n";

} // namespace

TEST_F(TORVProductSettingsTest, IsEmptyUntilItBelongsToAProduct)
{
    const Product empty;
    EXPECT_TRUE(empty.getProduct().isEmpty());
    EXPECT_TRUE(empty.getConfiguration().isEmpty());
    EXPECT_TRUE(empty.getColorScaleName().isEmpty());
    EXPECT_TRUE(empty.getSurfaces().isEmpty());
    EXPECT_EQ(empty.getRenderingType(), Product::SURFACE);
    EXPECT_EQ(empty.getVolumeValueLow(), -9999.0);
    EXPECT_EQ(empty.getVolumeOpacityLow(), 1.0);
    EXPECT_EQ(empty.getVolumeValueHigh(), 9999.0);
    EXPECT_EQ(empty.getVolumeOpacityHigh(), 100.0);
    EXPECT_TRUE(file().isEmpty());
}

TEST_F(TORVProductSettingsTest, WritesDefaultsAtTheFirstLookAtAProduct)
{
    const LogFile log(TORVLog::LEVEL_DEBUG);
    expectDefaults(Product(Cappi, Z, Reflectivity));
    EXPECT_EQ(file(), "[PRODUCT%20CAPPI%20Z]\ncolormap=Default\nrendering=surface\nsurface\\1\\isovalue=-31\n"
                      "surface\\1\\opacity=100\nsurface\\size=1\nvolumeopacityhigh=100\nvolumeopacitylow=1\n"
                      "volumevaluehigh=66.5\nvolumevaluelow=-31\n");
    EXPECT_EQ(log.lines(),
              QStringList({QStringLiteral("D: TORVProductSettings::load(): Group not found: PRODUCT CAPPI Z"),
                           QStringLiteral("D: -> Generating new default rendering settings.")}));
}

TEST_F(TORVProductSettingsTest, IsSilentWhereTheProductIsKnown)
{
    write(EveryKey);
    const LogFile log(TORVLog::LEVEL_DEBUG);
    const Product settings(Cappi, Z, Reflectivity);
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_EQ(file(), EveryKey);
}

TEST_F(TORVProductSettingsTest, ReadsEveryKeyOfAFileWrittenByHand)
{
    write(EveryKey);
    const Product settings(Cappi, Z, Reflectivity);
    EXPECT_EQ(settings.getProduct(), Cappi);
    EXPECT_EQ(settings.getConfiguration(), Z);
    EXPECT_EQ(settings.getColorScaleName(), QLatin1String("Rainbow"));
    EXPECT_EQ(settings.getRenderingType(), Product::VOLUME);
    EXPECT_EQ(settings.getSurfaces(), (QMap<double, int>{{-5.5, 10}, {40.0, 100}}));
    EXPECT_EQ(settings.getVolumeValueLow(), 10.0);
    EXPECT_EQ(settings.getVolumeOpacityLow(), 0.5);
    EXPECT_EQ(settings.getVolumeValueHigh(), 55.5);
    EXPECT_EQ(settings.getVolumeOpacityHigh(), 80.0);
}

TEST_F(TORVProductSettingsTest, WritesEveryKey)
{
    Product settings(Cappi, Z, Reflectivity);
    settings.setColorScaleName(QStringLiteral("Rainbow"));
    settings.setRenderingType(Product::VOLUME);
    settings.setSurfaces({{40.0, 100}, {-5.5, 10}});
    settings.setVolumeValueLow(10.0);
    settings.setVolumeOpacityLow(0.5);
    settings.setVolumeValueHigh(55.5);
    settings.setVolumeOpacityHigh(80.0);
    settings.save();
    EXPECT_EQ(file(), EveryKey);
}

TEST_F(TORVProductSettingsTest, TakesDefaultsForWhatTheGroupLacks)
{
    write(
        "[PRODUCT%20CAPPI%20Z]\nrendering=surface\nsurface\\1\\opacity=50\nsurface\\2\\isovalue=12\nsurface\\size=2\n");
    const Product settings(Cappi, Z, Reflectivity);
    EXPECT_EQ(settings.getSurfaces(), (QMap<double, int>{{-31.0, 50}, {12.0, 100}}));
    EXPECT_EQ(settings.getColorScaleName(), QLatin1String("Default"));
    EXPECT_EQ(settings.getVolumeValueLow(), -31.0);
    EXPECT_EQ(settings.getVolumeOpacityLow(), 1.0);
    EXPECT_EQ(settings.getVolumeValueHigh(), LargestTimes07);
    EXPECT_EQ(settings.getVolumeOpacityHigh(), 100.0);
}

TEST_F(TORVProductSettingsTest, HasNoSurfaceWhereTheGroupHasNoArray)
{
    EXPECT_TRUE(withLines({}).getSurfaces().isEmpty());
    EXPECT_TRUE(withLines("surface\\1\\isovalue=4\nsurface\\size=0\n").getSurfaces().isEmpty());
    EXPECT_TRUE(withLines("surface\\1\\isovalue=4\nsurface\\size=-7\n").getSurfaces().isEmpty());
}

TEST_F(TORVProductSettingsTest, KeepsTheLaterOfTwoSurfacesAtOneValue)
{
    EXPECT_EQ(withLines("surface\\1\\isovalue=4\nsurface\\1\\opacity=10\nsurface\\2\\isovalue=4\n"
                        "surface\\2\\opacity=20\nsurface\\size=2\n")
                  .getSurfaces(),
              (QMap<double, int>{{4.0, 20}}));
}

TEST_F(TORVProductSettingsTest, EmptiesTheSurfacesBeforeALoad)
{
    Product settings(Cappi, Z, Reflectivity);
    settings.setSurfaces({{1.0, 1}, {2.0, 2}});
    settings.load(Cappi, Z, Reflectivity);
    EXPECT_EQ(settings.getSurfaces(), (QMap<double, int>{{-31.0, 100}}));
}

TEST_F(TORVProductSettingsTest, LeavesNothingOfALongerListOfSurfaces)
{
    write(EveryKey);
    Product settings(Cappi, Z, Reflectivity);
    settings.setSurfaces({{7.0, 70}});
    settings.save();
    EXPECT_FALSE(file().contains("surface\\2"));
    settings.load(Cappi, Z, Reflectivity);
    EXPECT_EQ(settings.getSurfaces(), (QMap<double, int>{{7.0, 70}}));
}

TEST_F(TORVProductSettingsTest, ReadsOfAHugeArrayWhatIsThere)
{
    EXPECT_EQ(withLines("surface\\3\\isovalue=4\nsurface\\3\\opacity=10\nsurface\\size=1000000000\n").getSurfaces(),
              (QMap<double, int>{{4.0, 10}}));
}

TEST_F(TORVProductSettingsTest, TakesNoNumberThatIsNone)
{
    const Product settings = withLines("surface\\1\\isovalue=nan\nsurface\\1\\opacity=nan\nsurface\\size=1\n"
                                       "volumevaluelow=inf\nvolumeopacitylow=nan\nvolumevaluehigh=-inf\n"
                                       "volumeopacityhigh=dense\n");
    EXPECT_EQ(settings.getSurfaces(), (QMap<double, int>{{-31.0, 100}}));
    EXPECT_EQ(settings.getVolumeValueLow(), -31.0);
    EXPECT_EQ(settings.getVolumeOpacityLow(), 1.0);
    EXPECT_EQ(settings.getVolumeValueHigh(), LargestTimes07);
    EXPECT_EQ(settings.getVolumeOpacityHigh(), 100.0);
}

TEST_F(TORVProductSettingsTest, BringsOpacitiesIntoTheirRange)
{
    const Product settings =
        withLines("surface\\1\\isovalue=4\nsurface\\1\\opacity=101\nsurface\\2\\isovalue=5\nsurface\\2\\opacity=-1\n"
                  "surface\\size=2\nvolumeopacitylow=-0.5\nvolumeopacityhigh=1e9\n");
    EXPECT_EQ(settings.getSurfaces(), (QMap<double, int>{{4.0, 100}, {5.0, 0}}));
    EXPECT_EQ(settings.getVolumeOpacityLow(), 0.0);
    EXPECT_EQ(settings.getVolumeOpacityHigh(), 100.0);
}

TEST_F(TORVProductSettingsTest, KeepsAnUnknownRenderingTypeUnknown)
{
    write("[PRODUCT%20CAPPI%20Z]\nrendering=hologram\n");
    Product settings(Cappi, Z, Reflectivity);
    EXPECT_EQ(settings.getRenderingType(), Product::UNKNOWN);
    EXPECT_EQ(settings.renderingTypeToString(), QLatin1String("unknown"));
    settings.save();
    EXPECT_TRUE(file().contains("rendering=unknown\n"));
    settings.load(Cappi, Z, Reflectivity);
    EXPECT_EQ(settings.getRenderingType(), -1);
}

TEST_F(TORVProductSettingsTest, NamesTheRenderingTypes)
{
    Product settings;
    settings.setRenderingType(Product::VOLUME);
    EXPECT_EQ(settings.renderingTypeToString(), QLatin1String("volume"));
    settings.setRenderingType(Product::SURFACE);
    EXPECT_EQ(settings.renderingTypeToString(), QLatin1String("surface"));
}

TEST_F(TORVProductSettingsTest, GoesBackToTheDefaultsOfADataType)
{
    write(EveryKey);
    Product settings(Cappi, Z, Reflectivity);
    settings.reset(&Reflectivity);
    expectDefaults(settings);
    EXPECT_EQ(settings.getProduct(), Cappi);
    EXPECT_EQ(settings.getConfiguration(), Z);
    EXPECT_EQ(file(), EveryKey);
}

TEST_F(TORVProductSettingsTest, CutsTheRangeOfADataTypeTowardsZero)
{
    // The Nyquist velocity is wavelength times frequency over four.
    const TORVDataType velocity(3, 1000, 0, 532, 0); // 1000 Hz, 5.32 cm: 13.3 m/s
    ASSERT_EQ(static_cast<int>(velocity.getMinDisplayValue()), -13);
    Product settings;
    settings.reset(&velocity);
    EXPECT_EQ(settings.getVolumeValueLow(), -13.0);
    EXPECT_EQ(settings.getVolumeValueHigh(), 13.0 * 0.7);
}

TEST_F(TORVProductSettingsTest, GoesBackToWideNumbersWithoutADataType)
{
    Product settings;
    settings.reset(nullptr);
    EXPECT_EQ(settings.getSurfaces(), (QMap<double, int>{{-9999.0, 100}}));
    EXPECT_EQ(settings.getVolumeValueLow(), -9999.0);
    EXPECT_EQ(settings.getVolumeValueHigh(), 9999.0);
    EXPECT_EQ(settings.getColorScaleName(), QLatin1String("Default"));
}

TEST_F(TORVProductSettingsTest, HasAGroupForEachProductAndConfiguration)
{
    Product velocity(Cappi, QStringLiteral("V"), Reflectivity);
    velocity.setVolumeValueLow(3.0);
    velocity.save();
    EXPECT_EQ(Product(Cappi, Z, Reflectivity).getVolumeValueLow(), -31.0);
    EXPECT_EQ(Product(Cappi, QStringLiteral("V"), Reflectivity).getVolumeValueLow(), 3.0);
}

TEST_F(TORVProductSettingsTest, KeepsProductsOfAllNamesApart)
{
    const std::vector<std::pair<QString, QString>> names = {
        {QStringLiteral("CAPPI 500"), QStringLiteral("Z new")},
        {QStringLiteral("CAPPI"), QStringLiteral("500 Z")},
        {QStringLiteral("A/B"), QStringLiteral("Z")},
        {QStringLiteral("A//B"), QStringLiteral("Z")},
        {QStringLiteral("A"), QStringLiteral("Z/surface")},
        {QStringLiteral("A"), QStringLiteral("Z")},
        {QStringLiteral("../../x"), QStringLiteral("$(touch x);")},
        {QStringLiteral("[%General]"), QStringLiteral("=;\"'%20")},
        {QStringLiteral("Z\u00fcrich"), QStringLiteral("\u96e8\n")},
        {QString(), QString()},
    };
    int number = 0;
    for (const auto& name : names) {
        Product settings(name.first, name.second, Reflectivity);
        settings.setVolumeValueLow(++number);
        settings.setSurfaces({{number + 0.5, number}});
        settings.save();
    }
    number = 0;
    for (const auto& name : names) {
        const Product settings(name.first, name.second, Reflectivity);
        EXPECT_EQ(settings.getVolumeValueLow(), ++number) << qUtf8Printable(name.first + name.second);
        EXPECT_EQ(settings.getSurfaces(), (QMap<double, int>{{number + 0.5, number}}));
    }
    EXPECT_EQ(file().count("\n["), static_cast<int>(names.size()) - 1);
}

TEST_F(TORVProductSettingsTest, KeepsWhatAnotherVersionWrote)
{
    write("[PRODUCT%20CAPPI%20Z]\nrendering=surface\nlighting=soft\nsurface\\1\\isovalue=4\nsurface\\1\\glow=2\n"
          "surface\\size=1\n\n[PRODUCT%20CAPPI%20Z%202]\nrendering=hologram\n");
    Product(Cappi, Z, Reflectivity).save();
    for (const char* line :
         {"\nlighting=soft\n", "\nsurface\\1\\glow=2\n", "[PRODUCT%20CAPPI%20Z%202]\nrendering=hologram\n"}) {
        EXPECT_TRUE(file().contains(line)) << line;
    }
}

TEST_F(TORVProductSettingsTest, IsUnchangedAgainstItsCopy)
{
    const Product settings(Cappi, Z, Reflectivity);
    EXPECT_TRUE(reasonsOf(settings, copyOf(settings)).isEmpty());
}

TEST_F(TORVProductSettingsTest, TellsAChangeOfTheRenderingType)
{
    Product surface;
    const auto volume = copyOf(surface);
    volume->setRenderingType(Product::VOLUME);
    EXPECT_EQ(reasonsOf(surface, volume), QStringList(QStringLiteral("- Changed to volume rendering")));
    EXPECT_EQ(reasonsOf(*volume, copyOf(surface)), QStringList(QStringLiteral("- Changed to surface rendering")));
    const auto unknown = copyOf(surface);
    unknown->setRenderingType(Product::UNKNOWN);
    EXPECT_EQ(reasonsOf(surface, unknown), QStringList(QStringLiteral("- Changed to volume rendering")));
}

TEST_F(TORVProductSettingsTest, TellsAChangeOfTheSurfaces)
{
    Product old;
    old.setSurfaces({{10.0, 50}, {20.0, 60}});
    for (const QMap<double, int>& surfaces : {QMap<double, int>{{10.0, 50}}, QMap<double, int>{{10.0, 51}, {20.0, 60}},
                                              QMap<double, int>{{10.5, 50}, {20.0, 60}}, QMap<double, int>{}}) {
        const auto newer = copyOf(old);
        newer->setSurfaces(surfaces);
        EXPECT_EQ(reasonsOf(old, newer), QStringList(QStringLiteral("- Isosurface parameters changed")));
    }
}

TEST_F(TORVProductSettingsTest, TellsAChangeOfTheVolume)
{
    Product old;
    old.setRenderingType(Product::VOLUME);
    const std::vector<void (Product::*)(double)> setters = {&Product::setVolumeValueLow, &Product::setVolumeOpacityLow,
                                                            &Product::setVolumeValueHigh,
                                                            &Product::setVolumeOpacityHigh};
    for (const auto setter : setters) {
        const auto newer = copyOf(old);
        (newer.get()->*setter)(42.0);
        EXPECT_EQ(reasonsOf(old, newer), QStringList(QStringLiteral("- Volume parameters changed")));
    }
}

TEST_F(TORVProductSettingsTest, DoesNotCountTheNumbersOfTheOtherMode)
{
    Product surface;
    auto newer = copyOf(surface);
    newer->setVolumeValueLow(5.0);
    EXPECT_TRUE(reasonsOf(surface, newer).isEmpty());
    Product volume;
    volume.setRenderingType(Product::VOLUME);
    newer = copyOf(volume);
    newer->setSurfaces({{1.0, 1}});
    EXPECT_TRUE(reasonsOf(volume, newer).isEmpty());
}

TEST_F(TORVProductSettingsTest, TellsAllChangesInOneOrder)
{
    Product old;
    old.setColorScaleName(QStringLiteral("Default"));
    const auto newer = copyOf(old);
    newer->setRenderingType(Product::VOLUME);
    newer->setVolumeValueLow(5.0);
    newer->setColorScaleName(QStringLiteral("%1 Rainbow"));
    EXPECT_EQ(reasonsOf(old, newer), QStringList({QStringLiteral("- Changed to volume rendering"),
                                                  QStringLiteral("- Volume parameters changed"),
                                                  QStringLiteral("- Color map: Default -> %1 Rainbow")}));
}

TEST_F(TORVProductSettingsTest, CanBeUsedByTwoThreads)
{
    constexpr int Rounds = 20;
    std::vector<std::thread> threads;
    for (const QString& configuration : {Z, QStringLiteral("V")}) {
        threads.emplace_back([configuration] {
            for (int i = 1; i <= Rounds; ++i) {
                Product settings(Cappi, configuration, Reflectivity);
                EXPECT_EQ(settings.getVolumeValueLow(), i == 1 ? -31.0 : i - 1.0);
                settings.setVolumeValueLow(i);
                settings.save();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(Product(Cappi, QStringLiteral("V"), Reflectivity).getVolumeValueLow(), Rounds);
}
