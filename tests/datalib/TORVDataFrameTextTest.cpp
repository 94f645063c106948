#include "datalib/TORVDataFrame.h"

#include "FrameTest.h"

#include <QTranslator>

namespace
{

class TORVDataFrameTextTest : public FrameTest
{
protected:
    static boost::shared_ptr<TORVGeneralSettings> englishSettings()
    {
        const auto english = settings();
        english->setMetricUnits(false);
        english->set24hClock(false);
        return english;
    }

    // Four columns, three rows and two levels; the site stands at 60 N 25 E, its antenna 125 m above the sea.
    static TORVProductFields legendVolume()
    {
        TORVProductFields fields = volume("HALMERA");
        fields.zScale = 120000;
        return fields;
    }
};

using TORVDataFrameTextDeathTest = TORVDataFrameTextTest;

class Shouting final : public QTranslator
{
public:
    QString translate(const char* context, const char* text, const char*, int) const override
    {
        return qstrcmp(context, "Datalib") == 0 ? QString::fromLatin1(text).toUpper() : QString();
    }

    bool isEmpty() const override { return false; }
};

} // namespace

TEST_F(TORVDataFrameTextTest, NamesItsDataBySiteAndTime)
{
    add3d(Noon, volume("HALMERA", Z, 4 * 3600));
    open();
    const TORVDataFrame::Ptr chosen = frame();
    EXPECT_EQ(chosen->getDataId(settings()), QLatin1String("HALMERA: Tue 2026-07-14 16:00"));
    EXPECT_EQ(chosen->getDataId(englishSettings()), QLatin1String("HALMERA: Tue 2026-07-14 04:00 PM"));
}

TEST_F(TORVDataFrameTextTest, SaysThatThereIsNoData)
{
    open();
    EXPECT_EQ(emptyFrame()->getDataId(settings()), QLatin1String("(No data loaded)"));
    EXPECT_EQ(emptyFrame()->getLegend(settings()), QStringList{"Data not available"});
}

// The numbers: 3 km x 2 km x 1.2 km; 1 NM is 1.853184 km, 125 m are 410.1 ft.
TEST_F(TORVDataFrameTextTest, DescribesItsVolume)
{
    add3d(Noon, legendVolume());
    open();
    const TORVDataFrame::Ptr chosen = frame();
    EXPECT_EQ(chosen->getLegend(settings()),
              (QStringList{"Reflectivity, dBZ", "Tue 2026-07-14 12:00", "3.0 x 2.0 x 1.2 km",
                           QString::fromUtf8("HALMERA 60.0000° N, 25.0000° E, 125 m ASL")}));
    EXPECT_EQ(chosen->getLegend(englishSettings()),
              (QStringList{"Reflectivity, dBZ", "Tue 2026-07-14 12:00 PM", "1.6 x 1.1 x 0.6 NM",
                           QString::fromUtf8("HALMERA 60.0000° N, 25.0000° E, 410 ft ASL")}));
}

TEST_F(TORVDataFrameTextTest, SpeaksTheLanguageOfTheUser)
{
    add3d(Noon, legendVolume());
    open();
    Shouting language;
    QCoreApplication::installTranslator(&language);
    EXPECT_EQ(emptyFrame()->getDataId(settings()), QLatin1String("(NO DATA LOADED)"));
    EXPECT_EQ(emptyFrame()->getLegend(settings()), QStringList{"DATA NOT AVAILABLE"});
    frame(Before);
    EXPECT_EQ(history, QStringList{"REQUESTED DATA NOT AVAILABLE."});
    QCoreApplication::removeTranslator(&language);
}

TEST_F(TORVDataFrameTextDeathTest, StopsWithoutSettings)
{
    open();
    EXPECT_DEATH(emptyFrame()->getDataId(nullptr), "settings");
}
