#include "gui/DisplayMode.h"

#include "gui/TORVPalette.h"
#include "utils/TORVDisplayMode.h"

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QFile>
#include <QMainWindow>
#include <QPushButton>
#include <QSignalSpy>
#include <QToolBar>
#include <QToolButton>

#include <gtest/gtest.h>

#include <memory>

namespace
{

QImage resourceImage(const QString& name)
{
    return QImage(QLatin1String(":/icons/") + name + QLatin1String(".png"))
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QImage iconImage(const QIcon& icon, QIcon::Mode mode = QIcon::Normal, QIcon::State state = QIcon::Off)
{
    return icon.pixmap(QSize(24, 24), mode, state).toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QString resourceText(const QString& name)
{
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qUtf8Printable(name);
    return QString::fromLatin1(file.readAll());
}

class DisplayModeTest : public testing::Test
{
protected:
    ~DisplayModeTest() override
    {
        qApp->setStyleSheet(QString());
        QApplication::setPalette(palette);
        TORVDisplayMode::setNight(false);
    }

    void add(QObject* object)
    {
        QVector<QObject*> containers = {object};
        mode.addIcons(containers);
    }

    const QPalette palette = QApplication::palette();
    DisplayMode mode;
};

} // namespace

TEST_F(DisplayModeTest, StartsByDay)
{
    EXPECT_FALSE(mode.isCurrentModeNightMode());
}

TEST_F(DisplayModeTest, AnswersZeroForTheDayAndOneForTheNight)
{
    EXPECT_EQ(mode.toggleDisplayMode(true), 0);
    EXPECT_FALSE(mode.isCurrentModeNightMode());
    EXPECT_EQ(mode.toggleDisplayMode(false), 1);
    EXPECT_TRUE(mode.isCurrentModeNightMode());
}

TEST_F(DisplayModeTest, SetsTheSheetOfTheMode)
{
    mode.switchToNightMode();
    EXPECT_EQ(qApp->styleSheet(), resourceText(QStringLiteral(":/night_mode.qss")));
    mode.switchToDayMode();
    EXPECT_EQ(qApp->styleSheet(), resourceText(QStringLiteral(":/day_mode.qss")));
}

TEST_F(DisplayModeTest, TellsTheWholeProcess)
{
    mode.switchToNightMode();
    EXPECT_TRUE(TORVDisplayMode::isNight());
    mode.switchToDayMode();
    EXPECT_FALSE(TORVDisplayMode::isNight());
}

TEST_F(DisplayModeTest, GivesWidgetsThatPaintThemselvesThePaletteOfTheMode)
{
    mode.switchToNightMode();
    EXPECT_EQ(QApplication::palette().color(QPalette::WindowText), QColor(0xCD, 0xBE, 0xA4));
    mode.switchToDayMode();
    EXPECT_EQ(QApplication::palette().color(QPalette::WindowText), QColor(0x17, 0x21, 0x2A));
}

TEST_F(DisplayModeTest, HasSwitchedEverythingByTheTimeThatAWidgetHearsOfTheNewSheet)
{
    class Listener final : public QWidget
    {
    public:
        bool heard = false;
        bool wasNight = false;
        QColor text;

    private:
        void changeEvent(QEvent* event) override
        {
            if (event->type() == QEvent::StyleChange) {
                heard = true;
                wasNight = TORVDisplayMode::isNight();
                text = QApplication::palette().color(QPalette::WindowText);
            }
            QWidget::changeEvent(event);
        }
    };
    Listener listener;
    listener.ensurePolished();
    mode.switchToDayMode();
    listener.heard = false;
    mode.switchToNightMode();
    EXPECT_TRUE(listener.heard);
    EXPECT_TRUE(listener.wasNight);
    EXPECT_EQ(listener.text, TORVPalette::instance().color(QStringLiteral("text"), true));
}

TEST_F(DisplayModeTest, NamesTheIconOfAnActionByItsObjectName)
{
    QMainWindow window;
    auto* const action = new QAction(&window);
    action->setObjectName(QStringLiteral("help"));
    add(&window);
    EXPECT_EQ(iconImage(action->icon()), resourceImage(QStringLiteral("help_day")));
}

TEST_F(DisplayModeTest, NamesTheIconOfAButtonByItsAccessibleDescription)
{
    QWidget window;
    auto* const toolButton = new QToolButton(&window);
    toolButton->setAccessibleDescription(QStringLiteral("browse"));
    auto* const pushButton = new QPushButton(&window);
    pushButton->setObjectName(QStringLiteral("help"));
    pushButton->setAccessibleDescription(QStringLiteral("reset"));
    add(&window);
    EXPECT_EQ(toolButton->icon().pixmap(18, 18).toImage(),
              QIcon(QStringLiteral(":/icons/browse_day.png")).pixmap(18, 18).toImage());
    EXPECT_EQ(pushButton->icon().pixmap(18, 18).toImage(),
              QIcon(QStringLiteral(":/icons/reset_day.png")).pixmap(18, 18).toImage());
}

TEST_F(DisplayModeTest, FindsButtonsOnEveryLevelOfAContainer)
{
    QWidget window;
    auto* const panel = new QWidget(&window);
    auto* const row = new QWidget(panel);
    auto* const button = new QPushButton(row);
    button->setAccessibleDescription(QStringLiteral("copy"));
    add(&window);
    EXPECT_FALSE(button->icon().isNull());
}

TEST_F(DisplayModeTest, ListsTheContainerItself)
{
    QPushButton button;
    button.setAccessibleDescription(QStringLiteral("copy"));
    add(&button);
    EXPECT_FALSE(button.icon().isNull());
}

TEST_F(DisplayModeTest, PassesOverNullContainers)
{
    QAction action;
    action.setObjectName(QStringLiteral("help"));
    QVector<QObject*> containers = {nullptr, &action};
    mode.addIcons(containers);
    EXPECT_FALSE(action.icon().isNull());
}

TEST_F(DisplayModeTest, ListsAWidgetThatIsAddedAgainOnlyOnce)
{
    QAction action;
    action.setObjectName(QStringLiteral("help"));
    add(&action);
    add(&action);
    mode.getSingleIcon(&action);
    const QSignalSpy changes(&action, &QAction::changed);
    mode.updateIcons();
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(DisplayModeTest, AddsWhatWasMadeSinceTheFirstCall)
{
    QMainWindow window;
    add(&window);
    auto* const later = new QPushButton(&window);
    later->setAccessibleDescription(QStringLiteral("print"));
    add(&window);
    EXPECT_FALSE(later->icon().isNull());
}

TEST_F(DisplayModeTest, KeepsADialogInStepThatWasAddedLater)
{
    mode.switchToNightMode();
    QDialog dialog;
    auto* const button = new QPushButton(&dialog);
    button->setAccessibleDescription(QStringLiteral("expand"));
    add(&dialog);
    const QImage night = button->icon().pixmap(18, 18).toImage();
    EXPECT_EQ(night, QIcon(QStringLiteral(":/icons/expand_night.png")).pixmap(18, 18).toImage());
    mode.switchToDayMode();
    EXPECT_EQ(button->icon().pixmap(18, 18).toImage(),
              QIcon(QStringLiteral(":/icons/expand_day.png")).pixmap(18, 18).toImage());
}

TEST_F(DisplayModeTest, ForgetsWhatIsDeleted)
{
    auto dialog = std::make_unique<QDialog>();
    new QPushButton(dialog.get());
    new QToolButton(dialog.get());
    new QAction(dialog.get());
    add(dialog.get());
    dialog.reset();
    EXPECT_EQ(mode.toggleDisplayMode(false), 1);
}

TEST_F(DisplayModeTest, LeavesTheIconAloneWhereNoFileHasTheName)
{
    QMainWindow window;
    auto* const action = new QAction(QIcon(QStringLiteral(":/icons/help_day.png")), QString(), &window);
    action->setObjectName(QStringLiteral("nothingIsCalledThis"));
    add(&window);
    mode.switchToNightMode();
    EXPECT_EQ(iconImage(action->icon()), resourceImage(QStringLiteral("help_day")));
}

TEST_F(DisplayModeTest, ToolBarButtonsShowTheIconsOfTheirActions)
{
    QMainWindow window;
    QAction* const action = window.addToolBar(QString())->addAction(QStringLiteral("Help"));
    action->setObjectName(QStringLiteral("help"));
    add(&window);
    const auto* const toolBar = window.findChild<QToolBar*>();
    const auto* const button = qobject_cast<QToolButton*>(toolBar->widgetForAction(action));
    ASSERT_TRUE(button);
    mode.switchToNightMode();
    EXPECT_EQ(iconImage(button->icon()), resourceImage(QStringLiteral("help_night")));
}

TEST_F(DisplayModeTest, SetsASingleIconAtOnceUnderItsNewName)
{
    QAction action;
    action.setObjectName(QStringLiteral("snapshot"));
    add(&action);
    action.setObjectName(QStringLiteral("snapshot_rec"));
    mode.getSingleIcon(&action);
    EXPECT_EQ(iconImage(action.icon()), resourceImage(QStringLiteral("snapshot_rec_day")));
    mode.switchToNightMode();
    EXPECT_EQ(iconImage(action.icon()), resourceImage(QStringLiteral("snapshot_rec_night")));
}

TEST_F(DisplayModeTest, SetsASingleIconOfEitherKindOfButton)
{
    QToolButton toolButton;
    toolButton.setAccessibleDescription(QStringLiteral("copy"));
    mode.getSingleIcon(&toolButton);
    EXPECT_FALSE(toolButton.icon().isNull());
    QPushButton pushButton;
    pushButton.setAccessibleDescription(QStringLiteral("copy"));
    mode.getSingleIcon(&pushButton);
    EXPECT_FALSE(pushButton.icon().isNull());
}

TEST_F(DisplayModeTest, ASingleIconOfSomethingElseIsNone)
{
    QObject object;
    mode.getSingleIcon(&object);
    mode.getSingleIcon(nullptr);
    EXPECT_EQ(mode.toggleDisplayMode(false), 1);
}

TEST_F(DisplayModeTest, MakesAnIconOfThePlainTheDisabledAndTheSelectedFile)
{
    const QIcon icon = mode.createIcon(QStringLiteral("cursorTool"));
    const QImage selected = resourceImage(QStringLiteral("cursorTool_selected_day"));
    EXPECT_EQ(iconImage(icon), resourceImage(QStringLiteral("cursorTool_day")));
    EXPECT_EQ(iconImage(icon, QIcon::Disabled), resourceImage(QStringLiteral("cursorTool_disabled_day")));
    EXPECT_EQ(iconImage(icon, QIcon::Selected), selected);
    EXPECT_EQ(iconImage(icon, QIcon::Normal, QIcon::On), selected);
}

TEST_F(DisplayModeTest, MakesAnIconOfTheCurrentMode)
{
    mode.switchToNightMode();
    EXPECT_EQ(iconImage(mode.createIcon(QStringLiteral("help"))), resourceImage(QStringLiteral("help_night")));
}

TEST_F(DisplayModeTest, PassesOverMissingFilesInSilence)
{
    EXPECT_TRUE(mode.createIcon(QStringLiteral("nothingIsCalledThis")).isNull());
    EXPECT_TRUE(mode.createIcon(QString()).isNull());
    const QIcon plain = mode.createIcon(QStringLiteral("help")); // nothing that is checked
    EXPECT_EQ(iconImage(plain, QIcon::Normal, QIcon::On), resourceImage(QStringLiteral("help_day")));
}

TEST_F(DisplayModeTest, ServesTheScaleBetweenOneAndTwo)
{
    EXPECT_TRUE(mode.createIcon(QStringLiteral("help")).availableSizes().contains(QSize(36, 36)));
}

TEST_F(DisplayModeTest, ShowsAnIconWithoutADisabledFileInADisabledButton)
{
    const QIcon icon = mode.createIcon(QStringLiteral("lonely"));
    const QImage plain = iconImage(icon);
    const QImage disabled = iconImage(icon, QIcon::Disabled);
    ASSERT_FALSE(plain.isNull());
    EXPECT_EQ(plain, resourceImage(QStringLiteral("lonely_day")));
    ASSERT_FALSE(disabled.isNull());
    EXPECT_NE(disabled, plain) << "Qt makes a disabled form of its own";
    EXPECT_GT(qAlpha(disabled.pixel(12, 3)), 0);
}

TEST_F(DisplayModeTest, EndsWithTheSameIconsAndSheetAfterSwitchingTwice)
{
    QMainWindow window;
    auto* const action = new QAction(&window);
    action->setObjectName(QStringLiteral("nightMode"));
    auto* const button = new QPushButton(&window);
    button->setAccessibleDescription(QStringLiteral("layer_geo"));
    add(&window);
    mode.switchToDayMode();
    const QString sheet = qApp->styleSheet();
    const QImage actionIcon = iconImage(action->icon());
    const QImage buttonIcon = iconImage(button->icon());
    const QPalette colours = QApplication::palette();
    mode.toggleDisplayMode(false);
    EXPECT_NE(qApp->styleSheet(), sheet);
    EXPECT_NE(iconImage(action->icon()), actionIcon);
    mode.toggleDisplayMode(true);
    EXPECT_EQ(qApp->styleSheet(), sheet);
    EXPECT_EQ(iconImage(action->icon()), actionIcon);
    EXPECT_EQ(iconImage(button->icon()), buttonIcon);
    EXPECT_EQ(QApplication::palette(), colours);
}
