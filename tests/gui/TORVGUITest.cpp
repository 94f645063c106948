#include "gui/TORVGUI.h"

#include "support/LogFile.h"
#include "support/ProductFiles.h"
#include "support/SandboxedHome.h"
#include "utils/TORVDisplayMode.h"
#include "utils/TORVLog.h"

#include <QLabel>
#include <QListWidget>
#include <QtTest>

#include <gtest/gtest.h>

namespace
{

class TORVGUITest : public testing::Test
{
protected:
    void configure(const QString& directory)
    {
        home.write(QStringLiteral(".config/Halmera/TORV3D.conf"),
                   "[GENERAL]\ndata3d=" + directory.toUtf8() +
                       "\n\n[PRODUCT%20CAPPI%20Z]\nrendering=surface\nsurface\\size=1\n"
                       "surface\\1\\isovalue=45\nsurface\\1\\opacity=100\n");
    }

    // All of the scale is orange.
    void writeColours() const
    {
        home.write(QStringLiteral(".config/Halmera/TORV3DColors.conf"),
                   "[DATAMAPPING]\ndata\\size=3\ndata\\3\\data_index=1\n\n"
                   "[COLORSCALE%201]\nname=Default\ncolorset_index=1\ndata_index=1\n"
                   "points\\size=2\npoints\\1\\seam=0\npoints\\2\\seam=60\n\n"
                   "[COLORSET%201]\npoints\\size=2\n"
                   "points\\1\\lower\\r=250\npoints\\1\\lower\\g=170\npoints\\1\\lower\\b=40\n"
                   "points\\2\\lower\\r=250\npoints\\2\\lower\\g=170\npoints\\2\\lower\\b=40\n");
    }

    // A column of 60 dBZ in the middle of a volume of 40 x 40 x 10 points.
    QString writeStorm(const QString& name, const QByteArray& site, uint32_t dataSeconds)
    {
        TORVProductFields fields;
        fields.siteName = site;
        fields.dataSeconds = dataSeconds;
        fields.xPoints = fields.yPoints = 40;
        fields.zPoints = 10;
        fields.xRadar = fields.yRadar = 19500;
        const auto column = [](int x, int y, int) { return std::abs(x - 20) < 6 && std::abs(y - 20) < 6 ? 184U : 0U; };
        return files.write(name, fields, ProductFiles::data(fields, column));
    }

    static QString label(const TORVGUI& window)
    {
        return window.findChild<QLabel*>(QStringLiteral("label_dataId"))->text();
    }

    static QStringList history(const TORVGUI& window)
    {
        QStringList lines;
        for (int row = 0; row < window.listWidget_history->count(); ++row) {
            lines << window.listWidget_history->item(row)->text();
        }
        return lines;
    }

    LogFile log{TORVLog::LEVEL_DEBUG}; // threads write to it: the first to come and the last to go
    SandboxedHome home;
    ProductFiles files;
};

} // namespace

TEST_F(TORVGUITest, GreetsAndAsksForPathsAtTheFirstStart)
{
    const TORVGUI window;
    EXPECT_EQ(history(window), (QStringList{QStringLiteral("Welcome to TORV 3DView"),
                                            QStringLiteral("Please, set up your data paths.")}));
    EXPECT_EQ(label(window), QStringLiteral("(No data available)"));
}

TEST_F(TORVGUITest, ShowsTheNewestVolumeOfReflectivity)
{
    writeStorm(QStringLiteral("OLD260714110000.CAPZ"), "OLD SITE", 11 * 3600);
    writeStorm(QStringLiteral("NEW260714123000.CAPZ"), "new site", 12 * 3600 + 1800);
    configure(files.path(QString()));
    writeColours();
    TORVGUI window;
    window.show();
    const bool isShown = QTest::qWaitFor([&] { return label(window).startsWith(QStringLiteral("NEW SITE")); }, 20000);
    ASSERT_TRUE(isShown) << qUtf8Printable(label(window));
    EXPECT_EQ(label(window), QStringLiteral("NEW SITE: Tue 2026-07-14 12:30"));
    EXPECT_TRUE(history(window).contains(QStringLiteral("- NEW260714123000.CAPZ")));

    const auto isStormSeen = [&window] {
        const QImage picture = window.sceneWidget->grabFramebuffer();
        int core = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor colour = picture.pixelColor(x, y);
                core += colour.red() > 140 && colour.red() > colour.blue() + 60; // the only orange of the scene
            }
        }
        return core > picture.width() * picture.height() / 100;
    };
    EXPECT_TRUE(QTest::qWaitFor(isStormSeen, 20000));
}

TEST_F(TORVGUITest, TurnsIntoNightAndRemembersIt)
{
    {
        TORVGUI window;
        EXPECT_FALSE(window.nightMode->isChecked());
        window.nightMode->trigger();
        EXPECT_TRUE(TORVDisplayMode::isNight());
    }
    TORVDisplayMode::setNight(false);
    const TORVGUI next;
    EXPECT_TRUE(next.nightMode->isChecked());
    EXPECT_TRUE(TORVDisplayMode::isNight());
    TORVDisplayMode::setNight(false);
}

TEST_F(TORVGUITest, ShowsTheCursorOnRequest)
{
    TORVGUI window;
    const int mark = static_cast<int>(log.lines().size());
    window.cursorTool->trigger();
    window.cursorTool->trigger();
    EXPECT_EQ(log.lines().mid(mark).filter(QStringLiteral("TORVRenderer::togglePointWidget(): ")).size(), 2);
}

TEST_F(TORVGUITest, LooksPastEverythingThatIsNoVolumeOfReflectivity)
{
    writeStorm(QStringLiteral("HAL260714110000.CAPZ"), "HALMERA", 11 * 3600);
    TORVProductFields later;
    later.dataSeconds = 20 * 3600;
    later.dataType = 3;
    files.write(QStringLiteral("HAL260714200000.CAPV"), later);
    later.dataType = 2;
    later.zPoints = 1;
    files.write(QStringLiteral("HAL260714200000.MAX"), later);
    later.zPoints = 20;
    later.projectionType = 7;
    files.write(QStringLiteral("HAL260714200000.CAPZ"), later);
    files.writeGarbage(QStringLiteral("HAL260714210000.CAPZ"), 5000);
    files.writeTruncated(QStringLiteral("HAL260714220000.CAPZ"), TORVProductFields(), 700);
    configure(files.path(QString()));
    const TORVGUI window;
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return label(window) == QStringLiteral("HALMERA: Tue 2026-07-14 11:00"); }, 20000));
}

TEST_F(TORVGUITest, FollowsTheShownSiteAsNewVolumesArrive)
{
    writeStorm(QStringLiteral("HAL260714110000.CAPZ"), "HALMERA", 11 * 3600);
    configure(files.path(QString()));
    const TORVGUI window;
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return label(window) == QStringLiteral("HALMERA: Tue 2026-07-14 11:00"); }, 20000));
    writeStorm(QStringLiteral("OTH260714120000.CAPZ"), "OTHER", 12 * 3600);
    writeStorm(QStringLiteral("HAL260714110500.CAPZ"), "HALMERA", 11 * 3600 + 300);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return label(window) == QStringLiteral("HALMERA: Tue 2026-07-14 11:05"); }, 20000));
}

TEST_F(TORVGUITest, ShowsTheFirstVolumeThatComesIntoAnEmptyDirectory)
{
    configure(files.path(QString()));
    const TORVGUI window;
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return history(window).contains(QStringLiteral("Requested data not available:")); }, 20000));
    writeStorm(QStringLiteral("HAL260714110000.CAPZ"), "HALMERA", 11 * 3600);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return label(window) == QStringLiteral("HALMERA: Tue 2026-07-14 11:00"); }, 20000));
}

TEST_F(TORVGUITest, SaysThatThereIsNothingInAnEmptyDirectory)
{
    configure(files.path(QString()));
    const TORVGUI window;
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return history(window).contains(QStringLiteral("Requested data not available:")); }, 20000));
    EXPECT_EQ(label(window), QStringLiteral("(No data available)"));
}

TEST_F(TORVGUITest, CanGoWhileItsPictureIsBeingMade)
{
    writeStorm(QStringLiteral("HAL260714110000.CAPZ"), "HALMERA", 11 * 3600);
    configure(files.path(QString()));
    for (int i = 0; i < 5; ++i) {
        const TORVGUI window;
        EXPECT_EQ(label(window), QStringLiteral("(No data available)"));
    }
}

TEST_F(TORVGUITest, ShowsWhatTheLogTellsTheUser)
{
    const TORVGUI window;
    TORVLog::Instance()->logHistory(QStringList{QStringLiteral("one"), QStringLiteral("- two")});
    TORVLog::Instance()->logStatus(QStringLiteral("busy"), 0);
    EXPECT_EQ(history(window).mid(2), (QStringList{QStringLiteral("one"), QStringLiteral("- two")}));
    EXPECT_EQ(window.statusbar->currentMessage(), QStringLiteral("busy"));
}

TEST_F(TORVGUITest, ExitActionClosesTheWindow)
{
    TORVGUI window;
    window.show();
    window.fileExit->trigger();
    EXPECT_FALSE(window.isVisible());
}
