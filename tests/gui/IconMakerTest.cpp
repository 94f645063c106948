// The program that draws the icons and writes the style sheets at build time, and what it refuses.
#include "support/ProcessRun.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace
{

const QByteArray Drawing = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 24 24\" stroke=\"currentColor\">"
                           "<path d=\"M4 12h16\"/></svg>\n";
const QByteArray Palette = "muted #101010 #e0e0e0\ndisabled #808080 #707070\naccent #0000ff #ffff00\n"
                           "on_accent #ffffff #000000\nerr_fill #ff0000 #ff8080\n";

class IconMakerTest : public testing::Test
{
protected:
    IconMakerTest()
    {
        write("icons/application.svg", Drawing);
        write("icons/line.svg", Drawing);
        write("icons/icons.txt", "# a list\n\nline line 20 checkable\n");
        write("styles/palette.txt", Palette);
        write("styles/torv3d.qss", "QLabel { color: @muted; image: url(:/icons/line_@mode.png); }\n");
    }

    void write(const char* name, const QByteArray& bytes) const
    {
        const QString path = directory.filePath(QLatin1String("in/") + QLatin1String(name));
        ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QByteArray read(const QString& name) const
    {
        QFile file(directory.filePath(QLatin1String("out/") + name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qUtf8Printable(name);
        return file.readAll();
    }

    ProcessRun::Outcome make() const
    {
        return ProcessRun(QStringLiteral(TORV_ICONMAKER))(
            {directory.filePath(QStringLiteral("in")), directory.filePath(QStringLiteral("out"))});
    }

    void expectRefusal(const char* words) const
    {
        const ProcessRun::Outcome outcome = make();
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_TRUE(outcome.errors.contains(QLatin1String(words))) << qUtf8Printable(outcome.errors);
    }

    QTemporaryDir directory;
};

} // namespace

TEST_F(IconMakerTest, PutsColoursAndModesIntoTheSheets)
{
    EXPECT_EQ(make().exitCode, 0);
    EXPECT_EQ(read(QStringLiteral("day_mode.qss")), "QLabel { color: #101010; image: url(:/icons/line_day.png); }\n");
    EXPECT_EQ(read(QStringLiteral("night_mode.qss")),
              "QLabel { color: #e0e0e0; image: url(:/icons/line_night.png); }\n");
}

TEST_F(IconMakerTest, ListsWhatItMakesForTheResourceCompiler)
{
    EXPECT_EQ(make().exitCode, 0);
    const QByteArray list = read(QStringLiteral("look.qrc"));
    for (const char* const name : {"icons/line_day.png", "icons/line_night@1.5x.png", "icons/line_disabled_day@2x.png",
                                   "icons/line_selected_night.png", "icons/application_256.png", "day_mode.qss",
                                   "night_mode.qss", "palette.txt"}) {
        EXPECT_TRUE(list.contains(QByteArray("<file>") + name + "</file>")) << name;
        EXPECT_FALSE(read(QLatin1String(name)).isEmpty()) << name;
    }
}

TEST_F(IconMakerTest, RefusesAColourThatThePaletteLacks)
{
    write("styles/torv3d.qss", "QLabel { color: @mutde; }\n");
    expectRefusal("no colour called @mutde");
}

TEST_F(IconMakerTest, RefusesASheetBeyondLatin1)
{
    write("styles/torv3d.qss", "/* \u2192 */\n");
    expectRefusal("characters beyond Latin-1");
}

TEST_F(IconMakerTest, RefusesALineOfThePaletteThatItCanNotRead)
{
    write("styles/palette.txt", Palette + "text #12345\n");
    expectRefusal("text #12345");
}

TEST_F(IconMakerTest, RefusesALineOfTheIconListThatItCanNotRead)
{
    write("icons/icons.txt", "line line twenty checkable\n");
    expectRefusal("line line twenty checkable");
}

TEST_F(IconMakerTest, RefusesAnIconWithoutDrawing)
{
    write("icons/icons.txt", "line curve 20 -\n");
    expectRefusal("curve.svg");
}

TEST_F(IconMakerTest, RefusesADrawingInAFixedColour)
{
    write("icons/line.svg", QByteArray(Drawing).replace("currentColor", "#123456"));
    expectRefusal("line: no drawing in one colour variable");
}

TEST_F(IconMakerTest, RefusesAFileThatIsNoDrawing)
{
    write("icons/line.svg", "currentColor");
    expectRefusal("line.svg: not a drawing");
}

TEST_F(IconMakerTest, SaysHowItIsUsed)
{
    const ProcessRun::Outcome outcome = ProcessRun(QStringLiteral(TORV_ICONMAKER))({});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_TRUE(outcome.errors.startsWith(QLatin1String("usage: iconmaker")));
}
