#include "gui/TORVDirectoryEdit.h"

#include "gui/DisplayMode.h"
#include "gui/TORVPalette.h"
#include "support/SandboxedHome.h"
#include "utils/TORVDisplayMode.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace
{

constexpr int Patience_ms = 60000;

class TORVDirectoryEditTest : public testing::Test
{
protected:
    ~TORVDirectoryEditTest() override
    {
        qApp->setStyleSheet(QString());
        QApplication::setPalette(palette);
        TORVDisplayMode::setNight(false);
    }

    void type(const QString& text)
    {
        QSignalSpy checked(&edit, &TORVDirectoryEdit::checked);
        edit.setText(text);
        EXPECT_TRUE(checked.wait(Patience_ms));
    }

    bool isMarkShown() const { return edit.findChild<QAction*>(QStringLiteral("error"))->isVisible(); }

    QString errorColor(bool isNight) const
    {
        return TORVPalette::instance().color(QStringLiteral("err_text"), isNight).name();
    }

    const QPalette palette = QApplication::palette();
    const SandboxedHome home;
    const QString missing = home.filePath(QStringLiteral("nowhere"));
    TORVDirectoryEdit edit;
};

} // namespace

TEST_F(TORVDirectoryEditTest, AnEmptyLineIsNotMarked)
{
    EXPECT_FALSE(edit.isInvalid());
    EXPECT_FALSE(isMarkShown());
}

TEST_F(TORVDirectoryEditTest, ADirectoryThatIsThereIsNotMarked)
{
    type(home.path());
    EXPECT_FALSE(edit.isInvalid());
    EXPECT_FALSE(isMarkShown());
    EXPECT_EQ(edit.styleSheet(), QString());
}

TEST_F(TORVDirectoryEditTest, ADirectoryThatIsMissingIsMarkedByIconWordsAndColour)
{
    type(missing);
    EXPECT_TRUE(edit.isInvalid());
    EXPECT_TRUE(isMarkShown());
    EXPECT_EQ(edit.errorText(), QLatin1String("Invalid directory: ") + missing);
    EXPECT_EQ(edit.findChild<QAction*>(QStringLiteral("error"))->toolTip(), edit.errorText());
    EXPECT_EQ(edit.accessibleDescription(), edit.errorText());
    EXPECT_TRUE(edit.styleSheet().contains(errorColor(false)));
}

TEST_F(TORVDirectoryEditTest, AFileIsMarked)
{
    type(home.write(QStringLiteral("file"), "x"));
    EXPECT_TRUE(edit.isInvalid());
}

TEST_F(TORVDirectoryEditTest, TheMarkGoesWithTheError)
{
    type(missing);
    type(home.path());
    EXPECT_FALSE(edit.isInvalid());
    EXPECT_FALSE(isMarkShown());
    EXPECT_EQ(edit.accessibleDescription(), QString());
}

TEST_F(TORVDirectoryEditTest, TheMarkGoesAtOnceWhenTheLineIsEmptied)
{
    type(missing);
    edit.clear();
    EXPECT_FALSE(edit.isInvalid());
}

TEST_F(TORVDirectoryEditTest, TheHomeDirectoryMayBeWrittenAsATilde)
{
    ASSERT_TRUE(QDir(home.path()).mkdir(QStringLiteral("3d")));
    type(QStringLiteral("~/3d"));
    EXPECT_FALSE(edit.isInvalid());
    EXPECT_EQ(edit.absolutePath(), home.filePath(QStringLiteral("3d")));
}

TEST_F(TORVDirectoryEditTest, ADirectoryThatIsMadeLaterIsFoundBySecondLook)
{
    type(missing);
    ASSERT_TRUE(QDir().mkdir(missing));
    QSignalSpy checked(&edit, &TORVDirectoryEdit::checked);
    edit.checkDirectory();
    EXPECT_TRUE(checked.wait(Patience_ms));
    EXPECT_FALSE(edit.isInvalid());
}

TEST_F(TORVDirectoryEditTest, TheColourFollowsTheMode)
{
    DisplayMode mode;
    type(missing);
    mode.switchToNightMode();
    EXPECT_TRUE(edit.styleSheet().contains(errorColor(true)));
    mode.switchToDayMode();
    EXPECT_TRUE(edit.styleSheet().contains(errorColor(false)));
}

TEST_F(TORVDirectoryEditTest, TheMarkGetsTheIconOfErrors)
{
    DisplayMode mode;
    QVector<QObject*> containers = {&edit};
    mode.addIcons(containers);
    EXPECT_FALSE(edit.findChild<QAction*>(QStringLiteral("error"))->icon().isNull());
}
