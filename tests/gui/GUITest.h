#pragma once

#include "gui/TORVGUI.h"

#include "gui/TORVAnimation.h"
#include "gui/TORVAnimationFrame.h"
#include "support/LogFile.h"
#include "support/MessageGuard.h"
#include "support/ProductFiles.h"
#include "support/SandboxedHome.h"
#include "utils/TORVDisplayMode.h"
#include "utils/TORVLog.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QThreadPool>
#include <QtTest>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

/**
 * The whole main window in a home of its own, on real directories of products that the test writes. Volumes are of 16 x
 * 16 x 4 points with a column of 60 dBZ in the middle. Times are minutes after 2026-07-14 12:00 UTC.
 *
 * Thread: main thread of the test.
 */
class GUITest : public testing::Test
{
protected:
    static constexpr int Patience_ms = 60000;

    GUITest()
    {
        MessageGuard::allow(QStringLiteral("(SetInputFocus)")); // no window manager says when a dialog can take it
        EXPECT_TRUE(QDir(home.path()).mkpath(QStringLiteral("3d")));
        EXPECT_TRUE(QDir(home.path()).mkpath(QStringLiteral("2d")));
        shareTerrainCache();
    }

    /// The flat ground of all tests is the same: it is converted once for all of them.
    void shareTerrainCache() const
    {
        const QString shared = QCoreApplication::applicationDirPath() + QStringLiteral("/terrain-cache");
        EXPECT_TRUE(QDir().mkpath(shared));
        EXPECT_TRUE(QDir(home.path()).mkpath(QStringLiteral(".torv3d/cache")));
        EXPECT_TRUE(QFile::link(shared, terrainCache()));
    }

    QString terrainCache() const { return home.filePath(QStringLiteral(".torv3d/cache/terrain")); }

    ~GUITest() override
    {
        window.reset();
        QThreadPool::globalInstance()->waitForDone(); // a question about the service outlives the window
        TORVDisplayMode::setNight(false);
    }

    QString directory(const char* name) const { return home.filePath(QLatin1String(name)); }

    /// The settings of group "GENERAL", "key=value" each, beside the directories, and text of other groups.
    void configure(const QStringList& general = {}, const QByteArray& others = {}) const
    {
        QStringList lines{QStringLiteral("[GENERAL]"), QStringLiteral("data3d=") + directory("3d"),
                          QStringLiteral("data2d=") + directory("2d")};
        lines += general;
        home.write(QStringLiteral(".config/Halmera/TORV3D.conf"),
                   lines.join(QLatin1Char('\n')).toUtf8() +
                       "\n\n[PRODUCT%20CAPPI%20Z]\nrendering=surface\nsurface\\size=1\nsurface\\1\\isovalue=45\n"
                       "surface\\1\\opacity=100\n\n" +
                       others);
    }

    /// As `configure`, following the newest of a site.
    void configureLive(const QString& site = QStringLiteral("HALMERA"), const QStringList& general = {},
                       const QByteArray& others = {}) const
    {
        configure(QStringList{QStringLiteral("livemode=true"), QLatin1String("livemode_site=") + site,
                              QStringLiteral("livemode_product3d=CAPPI - Z")} +
                      general,
                  others);
    }

    static QString fileName(const QByteArray& site, int minute, const char* ending)
    {
        const QDateTime time = QDateTime(QDate(2026, 7, 14), QTime(12, 0), Qt::UTC).addSecs(minute * 60);
        return QString::fromLatin1(site.left(3)) + time.toString(QStringLiteral("yyMMddhhmmss")) + QLatin1Char('.') +
               QLatin1String(ending);
    }

    static TORVProductFields fieldsOf(const QByteArray& site, int minute)
    {
        const QDateTime time = QDateTime(QDate(2026, 7, 14), QTime(12, 0), Qt::UTC).addSecs(minute * 60);
        TORVProductFields fields;
        fields.siteName = site;
        fields.dataYear = static_cast<uint16_t>(time.date().year());
        fields.dataMonth = static_cast<uint16_t>(time.date().month());
        fields.dataDay = static_cast<uint16_t>(time.date().day());
        fields.dataSeconds = static_cast<uint32_t>(time.time().msecsSinceStartOfDay() / 1000);
        fields.xPoints = fields.yPoints = 16;
        fields.zPoints = 4;
        fields.xRadar = fields.yRadar = 7500;
        return fields;
    }

    /// A volume of reflectivity, or of another quantity. @return its absolute path
    QString writeVolume(const QByteArray& site, int minute, uint16_t quantity = 2, const char* ending = "CAPZ") const
    {
        TORVProductFields fields = fieldsOf(site, minute);
        fields.dataType = quantity;
        const auto column = [](int x, int y, int) { return std::abs(x - 8) < 3 && std::abs(y - 8) < 3 ? 184U : 0U; };
        return put("3d", fileName(site, minute, ending), Product(fields, column));
    }

    /// A flat product: 16 is MAX, 1 is PPI.
    QString writeFlat(const QByteArray& site, int minute, uint16_t product = 16, const char* ending = "MAX") const
    {
        TORVProductFields fields = fieldsOf(site, minute);
        fields.productType = product;
        fields.zPoints = 1;
        return put("2d", fileName(site, minute, ending), Product(fields, [](int, int, int) { return 100U; }));
    }

    /// A window whose start is not waited for.
    void open()
    {
        window = std::make_unique<TORVGUI>();
        window->sceneWidget->setFixedSize(240, 180); // drawing takes longer than all else here
        window->show();
        window->findChild<QTimer*>(QStringLiteral("startupTimer"))->start(0);
    }

    /// The same, once it shows what was asked for and has nothing to do.
    void openAndWait(int frames)
    {
        open();
        ASSERT_TRUE(waitForFrames(frames)) << qUtf8Printable(history().join(QLatin1Char('\n')));
    }

    static bool waitFor(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, Patience_ms); }

    bool isShown() const { return window->getCurrentDataFrame() && !window->isBusy(); }

    bool waitForFrames(int frames) const
    {
        return waitFor([this, frames] { return isShown() && window->getAnimation().getFrameCount() == frames; });
    }

    bool waitForMinute(int minute) const
    {
        return waitFor([this, minute] { return isShown() && minuteShown() == minute; });
    }

    /// Of the frame on show; -1 without one.
    int minuteShown() const
    {
        const auto frame = window->getCurrentDataFrame();
        if (!frame) {
            return -1;
        }
        const QDateTime noon(QDate(2026, 7, 14), QTime(12, 0), Qt::UTC);
        return static_cast<int>(noon.secsTo(frame->getData3d()->getFile()->getDataTime()) / 60);
    }

    QVector<int> minutesOfFrames() const
    {
        const QDateTime noon(QDate(2026, 7, 14), QTime(12, 0), Qt::UTC);
        QVector<int> minutes;
        for (const TORVAnimation::FramePtr& frame : window->getAnimation().getFrames()) {
            minutes << static_cast<int>(noon.secsTo(frame->getTime()) / 60);
        }
        return minutes;
    }

    QString label() const { return window->findChild<QLabel*>(QStringLiteral("label_dataId"))->text(); }

    QStringList history() const
    {
        QStringList lines;
        for (int row = 0; row < window->listWidget_history->count(); ++row) {
            lines << window->listWidget_history->item(row)->text();
        }
        return lines;
    }

    int countInHistory(const QString& line) const { return history().count(line); }

    bool waitForHistory(const QString& line) const
    {
        return waitFor([this, &line] { return countInHistory(line) > 0; });
    }

    /// As the user does it.
    static void choose(QComboBox* box, const QString& text)
    {
        const int index = box->findText(text);
        ASSERT_GE(index, 0) << qUtf8Printable(text);
        box->setCurrentIndex(index);
        Q_EMIT box->activated(index);
    }

    static QStringList entries(const QComboBox* box)
    {
        QStringList texts;
        for (int i = 0; i < box->count(); ++i) {
            texts << box->itemText(i);
        }
        return texts;
    }

    LogFile log{TORVLog::LEVEL_DEBUG}; // threads write to it: the first to come and the last to go
    SandboxedHome home;
    std::unique_ptr<TORVGUI> window;

private:
    struct Product
    {
        Product(TORVProductFields header, const ProductFiles::Field& field)
            : fields(std::move(header)), data(ProductFiles::data(fields, field))
        {
        }

        TORVProductFields fields;
        QByteArray data;
    };

    // Written elsewhere and moved in, as a radar does it.
    QString put(const char* folder, const QString& name, const Product& file) const
    {
        const QString written = _files.write(name, file.fields, file.data);
        const QString path = directory(folder) + QLatin1Char('/') + name;
        QFile::remove(path);
        EXPECT_TRUE(QFile::rename(written, path));
        return path;
    }

    ProductFiles _files;
};
