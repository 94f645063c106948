// Whether the colours of the windows can be read, and whether the style sheets hold nothing but them.
#include "gui/DisplayMode.h"
#include "gui/HalmeraStyle.h"
#include "gui/TORVPalette.h"
#include "utils/TORVDisplayMode.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSpinBox>
#include <QStatusBar>
#include <QTabWidget>
#include <QTemporaryFile>
#include <QTextEdit>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace
{

const QString Table = QStringLiteral(TORV_SOURCE_DIR "/resources/styles/palette.txt");
constexpr double HalfADigit = 0.055; // ratios are told with one digit behind the point, and some rounded twice

// The contrast ratio of the Web Content Accessibility Guidelines 2.1, and the relative luminance that it is made of.
double linear(double channel)
{
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

struct Ratio
{
    const char* name;
    const char* ground;
    double day;
    double night;
};

const Ratio Ratios[] = {
    {"text", "panel", 14.4, 10.0},         {"text", "window", 12.6, 10.5},      {"text", "field", 15.7, 9.1},
    {"text", "press", 11.0, 7.4},          {"control", "panel", 3.6, 3.9},      {"control", "field", 3.9, 3.6},
    {"control", "raised", 3.8, 3.3},       {"control", "window", 3.2, 4.1},     {"muted", "panel", 8.2, 7.8},
    {"muted", "window", 7.2, 8.2},         {"muted", "field", 8.9, 7.1},        {"disabled", "panel", 3.2, 3.3},
    {"accent", "panel", 6.6, 6.9},         {"accent", "bar", 6.2, 7.1},         {"accent", "field", 7.2, 6.3},
    {"text", "accent_soft", 12.1, 7.5},    {"accent", "accent_soft", 5.6, 5.2}, {"on_accent", "accent", 7.5, 7.3},
    {"on_accent", "accent_hi", 10.0, 8.8}, {"focus", "panel", 6.6, 8.4},        {"focus", "window", 5.8, 8.8},
    {"on_select", "select", 7.5, 7.6},     {"on_warn", "warn_fill", 9.0, 8.8},  {"warn_text", "panel", 8.3, 8.6},
    {"on_err", "err_fill", 7.3, 7.2},      {"err_fill", "panel", 6.4, 6.6},     {"err_text", "panel", 7.9, 8.1},
    {"err_text", "field", 8.7, 7.4},       {"ok", "panel", 7.5, 7.4},           {"live", "panel", 7.5, 7.9},
    {"on_tip", "tip", 12.4, 8.6},
};

QString sheet(bool night)
{
    QFile file(night ? QStringLiteral(":/night_mode.qss") : QStringLiteral(":/day_mode.qss"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QString::fromLatin1(file.readAll());
}

QStringList allIn(const QString& text, const QString& pattern)
{
    QStringList found;
    for (auto match = QRegularExpression(pattern).globalMatch(text); match.hasNext();) {
        found << match.next().captured(1);
    }
    return found;
}

QString rulesOf(const QString& text)
{
    return QString(text).remove(
        QRegularExpression(QStringLiteral("/\\*.*?\\*/"), QRegularExpression::DotMatchesEverythingOption));
}

bool hasStroke(const QImage& image, const QColor& color)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (std::abs(image.pixelColor(x, y).green() - color.green()) <= 4) {
                return true;
            }
        }
    }
    return false;
}

int count(const QImage& image, const QColor& color)
{
    int pixels = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            pixels += image.pixelColor(x, y) == color ? 1 : 0;
        }
    }
    return pixels;
}

// A window with one of everything.
class Everything final : public QMainWindow
{
public:
    Everything()
    {
        menuBar()->addMenu(QStringLiteral("Menu"))->addAction(QStringLiteral("Action"));
        QToolBar* const bar = addToolBar(QStringLiteral("Bar"));
        QAction* const help = bar->addAction(QIcon(QStringLiteral(":/icons/help_day.png")), QStringLiteral("Help"));
        toolButton = bar->widgetForAction(help);
        bar->setIconSize(QSize(24, 24));
        auto* const panel = new QWidget;
        auto* const column = new QVBoxLayout(panel);
        for (QWidget* const widget : QList<QWidget*>{new QLabel, new QCheckBox, new QRadioButton, new QGroupBox,
                                                     new QTreeWidget, new QTabWidget, new QProgressBar, new QTextEdit,
                                                     new QSlider(Qt::Horizontal), new QScrollBar(Qt::Horizontal)}) {
            column->addWidget(widget);
        }
        for (QWidget* const widget : QList<QWidget*>{button, combo, edit, spin, row, primary, play, step}) {
            column->addWidget(widget);
        }
        primary->setProperty("primary", true);
        play->setObjectName(QStringLiteral("pushButton_animPlay"));
        step->setObjectName(QStringLiteral("pushButton_animNext"));
        row->setObjectName(QStringLiteral("pushButton_3DProductVisible"));
        row->setCheckable(true);
        combo->addItem(QStringLiteral("Entry"));
        setCentralWidget(panel);
        statusBar()->showMessage(QStringLiteral("Message"));
    }

    QPushButton* const button = new QPushButton(QStringLiteral("Apply"));
    QComboBox* const combo = new QComboBox;
    QLineEdit* const edit = new QLineEdit;
    QSpinBox* const spin = new QSpinBox;
    QPushButton* const row = new QPushButton(QStringLiteral("3D product"));
    QPushButton* const primary = new QPushButton(QStringLiteral("Save"));
    QPushButton* const play = new QPushButton;
    QPushButton* const step = new QPushButton;
    QWidget* toolButton = nullptr;
};

class LookSheet : public testing::TestWithParam<bool>
{
protected:
    ~LookSheet() override
    {
        qApp->setStyleSheet(QString());
        QApplication::setStyle(oldStyle);
        QApplication::setPalette(oldPalette);
        TORVDisplayMode::setNight(false);
    }

    void apply()
    {
        QApplication::setStyle(new HalmeraStyle);
        mode.toggleDisplayMode(!GetParam());
    }

    const QString oldStyle = QApplication::style()->objectName();
    const QPalette oldPalette = QApplication::palette();
    DisplayMode mode;
};

} // namespace

TEST(LookPalette, HoldsTheTableItWasBuiltOf)
{
    const TORVPalette source(Table);
    EXPECT_TRUE(source.getErrors().isEmpty()) << qUtf8Printable(source.getErrors().join(QLatin1Char('\n')));
    EXPECT_EQ(source.getNames().size(), 29);
    EXPECT_EQ(TORVPalette::instance().getNames(), source.getNames());
    for (const QString& name : source.getNames()) {
        EXPECT_EQ(TORVPalette::instance().color(name, true), source.color(name, true));
        EXPECT_EQ(TORVPalette::instance().color(name, false), source.color(name, false));
    }
}

TEST(LookPalette, GivesTheContrastsThatItPromises)
{
    const TORVPalette palette(Table);
    for (const Ratio& row : Ratios) {
        const QString name = QLatin1String(row.name);
        const QString ground = QLatin1String(row.ground);
        EXPECT_NEAR(contrast(palette.color(name, false), palette.color(ground, false)), row.day, HalfADigit)
            << row.name << " on " << row.ground << " by day";
        EXPECT_NEAR(contrast(palette.color(name, true), palette.color(ground, true)), row.night, HalfADigit)
            << row.name << " on " << row.ground << " by night";
    }
}

TEST(LookPalette, HasNoPureWhiteAtNight)
{
    const TORVPalette palette(Table);
    for (const QString& name : palette.getNames()) {
        EXPECT_NE(palette.color(name, true), QColor(Qt::white)) << qUtf8Printable(name);
    }
}

TEST(LookPalette, HasWhiteByDayOnlyOnFillsOfAStrongColour)
{
    const TORVPalette palette(Table);
    QStringList white;
    for (const QString& name : palette.getNames()) {
        if (palette.color(name, false) == QColor(Qt::white)) {
            white << name;
        }
    }
    EXPECT_EQ(white, QStringList({"on_accent", "on_select", "on_err"}));
}

TEST(LookPalette, HasWarmGroundsAtNight)
{
    const TORVPalette palette(Table);
    for (const char* const name : {"window", "panel", "bar", "field", "raised", "hover", "press", "line", "text"}) {
        const QColor color = palette.color(QLatin1String(name), true);
        EXPECT_GT(color.red(), color.blue()) << name;
    }
}

TEST(LookPalette, KnowsNoColourOfAnotherName)
{
    EXPECT_FALSE(TORVPalette::instance().color(QStringLiteral("nothing"), false).isValid());
}

TEST(LookPalette, NamesTheLinesThatItCanNotRead)
{
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write("# a comment\n\ntext #101010 #202020\ntext #303030 #404040\nshort #101010\nhalf #10101 #202020\n");
    file.close();
    const TORVPalette palette(file.fileName());
    EXPECT_EQ(palette.getErrors(), QStringList({"text #303030 #404040", "short #101010", "half #10101 #202020"}));
    EXPECT_EQ(palette.getNames(), QStringList("text"));
    EXPECT_EQ(palette.color(QStringLiteral("text"), true), QColor(0x20, 0x20, 0x20));
}

TEST(LookPalette, SaysThatItsFileIsMissing)
{
    const TORVPalette palette(QStringLiteral("/no/such/table"));
    EXPECT_EQ(palette.getErrors().size(), 1);
}

TEST(LookPalette, GivesDisabledTextsTheirOwnColourInWidgetsWithoutSheet)
{
    const QPalette palette = TORVPalette::instance().widgetPalette(false);
    EXPECT_EQ(palette.color(QPalette::Disabled, QPalette::ButtonText), QColor(0x7C, 0x89, 0x94));
    EXPECT_EQ(palette.color(QPalette::Active, QPalette::ButtonText), QColor(0x17, 0x21, 0x2A));
}

TEST_P(LookSheet, HasNoNameLeftThatStandsForAColour)
{
    EXPECT_FALSE(sheet(GetParam()).contains(QLatin1Char('@')));
}

TEST_P(LookSheet, ShowsOnlyPicturesThatAreThereAndOfItsMode)
{
    const QStringList pictures = allIn(sheet(GetParam()), QStringLiteral("url\\(([^)]*)\\)"));
    EXPECT_GT(pictures.size(), 20);
    const QLatin1String ending(GetParam() ? "_night.png" : "_day.png");
    for (const QString& picture : pictures) {
        EXPECT_TRUE(QFile::exists(picture)) << qUtf8Printable(picture);
        EXPECT_TRUE(picture.endsWith(ending)) << qUtf8Printable(picture);
    }
}

TEST_P(LookSheet, HasNoColourThatThePaletteLacks)
{
    QStringList known;
    for (const QString& name : TORVPalette::instance().getNames()) {
        known << TORVPalette::instance().color(name, GetParam()).name();
    }
    for (const QString& color : allIn(sheet(GetParam()), QStringLiteral("(#[0-9a-fA-F]{3,8});"))) {
        EXPECT_TRUE(known.contains(color)) << qUtf8Printable(color);
    }
}

TEST_P(LookSheet, CoversEveryKindOfWidget)
{
    const QString rules = rulesOf(sheet(GetParam()));
    EXPECT_GE(rules.count(QLatin1Char('{')), 138);
    for (const char* const name :
         {"QToolTip",    "QDialog",    "QMessageBox",  "QFrame",      "QGroupBox", "QMainWindow",      "QMenuBar",
          "QMenu",       "QSplitter",  "QStatusBar",   "QTabWidget",  "QTabBar",   "QDockWidget",      "QLabel",
          "QPushButton", "QCheckBox",  "QRadioButton", "QComboBox",   "QLineEdit", "QAbstractSpinBox", "QTextEdit",
          "QListView",   "QTreeView",  "QTableView",   "QHeaderView", "QSlider",   "QScrollBar",       "QProgressBar",
          "QToolBar",    "QToolButton"}) {
        EXPECT_TRUE(rules.contains(QRegularExpression(QStringLiteral("(^|\\s|,)%1\\b").arg(QLatin1String(name)))))
            << name;
    }
}

TEST_P(LookSheet, HasATableOfContentsThatNamesItsSectionsInTheirOrder)
{
    const QString text = sheet(GetParam());
    const QString contents = text.section(QStringLiteral("*/"), 0, 0);
    const QString rest = text.section(QStringLiteral("*/"), 1);
    const QString pattern = QStringLiteral("(?m)^\\s*(?:/\\* )?(\\d+(?:\\.\\d+)? +[A-Z][a-z, ]+)");
    QStringList named = allIn(contents, pattern);
    QStringList there = allIn(rest, pattern);
    for (QStringList* const list : {&named, &there}) {
        for (QString& entry : *list) {
            entry = entry.simplified();
        }
    }
    EXPECT_EQ(named.size(), 34);
    EXPECT_EQ(there, named);
}

TEST_P(LookSheet, IsReadByQtWithoutAWord)
{
    apply();
    Everything window;
    window.show();
    QApplication::processEvents();
    EXPECT_FALSE(window.grab().isNull()); // an unexpected message fails the test
}

TEST_P(LookSheet, GivesControlsTheirHeights)
{
    apply();
    Everything window;
    window.show();
    QApplication::processEvents();
    EXPECT_EQ(window.button->sizeHint().height(), 28);
    EXPECT_EQ(window.combo->sizeHint().height(), 28);
    EXPECT_EQ(window.edit->sizeHint().height(), 28);
    EXPECT_EQ(window.spin->sizeHint().height(), 28);
    EXPECT_EQ(window.row->height(), 26);
    EXPECT_EQ(window.toolButton->size(), QSize(38, 38));
    EXPECT_EQ(window.play->size(), QSize(44, 44));
    EXPECT_EQ(window.step->size(), QSize(36, 36));
    EXPECT_EQ(window.findChild<QToolBar*>()->height(), 54);
    EXPECT_EQ(window.statusBar()->height(), 24);
}

TEST_P(LookSheet, ShowsWhereTheFocusIs)
{
    apply();
    Everything window;
    window.show();
    QApplication::setActiveWindow(&window);
    QApplication::processEvents();
    const QColor ring = TORVPalette::instance().color(QStringLiteral("focus"), GetParam());
    for (QWidget* const widget : QList<QWidget*>{window.button, window.combo, window.edit, window.spin, window.row,
                                                 window.step, window.findChild<QCheckBox*>(),
                                                 window.findChild<QRadioButton*>(), window.findChild<QSlider*>(),
                                                 window.findChild<QTreeWidget*>(), window.findChild<QTextEdit*>()}) {
        widget->clearFocus();
        EXPECT_LT(count(widget->grab().toImage(), ring), 150) << widget->metaObject()->className();
        widget->setFocus();
        ASSERT_TRUE(widget->hasFocus()) << widget->metaObject()->className();
        const int perimeter = 2 * (widget->width() + widget->height());
        // Two pixels wide, but blended with what is around it where it is round.
        EXPECT_GT(count(widget->grab().toImage(), ring), perimeter / 2) << widget->metaObject()->className();
    }
}

TEST_P(LookSheet, ShowsTheFocusOnAFillOfTheAccentInTheColourOfItsText)
{
    apply();
    Everything window;
    window.show();
    QApplication::setActiveWindow(&window);
    QApplication::processEvents();
    const QColor ring = TORVPalette::instance().color(QStringLiteral("on_accent"), GetParam());
    for (QPushButton* const button : {window.play, window.primary}) {
        button->clearFocus();
        const int before = count(button->grab().toImage(), ring);
        const QSize size = button->size();
        button->setFocus();
        ASSERT_TRUE(button->hasFocus());
        EXPECT_GT(count(button->grab().toImage(), ring), before + 30);
        EXPECT_EQ(button->size(), size) << "nothing moves";
    }
}

TEST_P(LookSheet, PaintsGroundsAndFillsInTheirColours)
{
    apply();
    Everything window;
    window.show();
    QApplication::processEvents();
    const TORVPalette& palette = TORVPalette::instance();
    const auto colorOf = [&palette](const char* name) { return palette.color(QLatin1String(name), GetParam()); };
    EXPECT_EQ(window.edit->grab().toImage().pixelColor(6, 14), colorOf("field"));
    EXPECT_EQ(window.button->grab().toImage().pixelColor(4, 14), colorOf("raised"));
    EXPECT_EQ(window.play->grab().toImage().pixelColor(10, 22), colorOf("accent"));
    EXPECT_EQ(window.statusBar()->grab().toImage().pixelColor(window.width() / 2, 12), colorOf("bar"));
}

TEST_P(LookSheet, PutsAnEyeAtTheRightOfALayerRow)
{
    apply();
    Everything window;
    window.show();
    QApplication::processEvents();
    const auto right = [&window] {
        const QImage image = window.row->grab().toImage();
        return image.copy(image.width() - 26, 0, 26, image.height());
    };
    const QImage shut = right();
    window.row->setChecked(true);
    const QImage open = right();
    EXPECT_NE(shut, open);
    EXPECT_TRUE(hasStroke(open, TORVPalette::instance().color(QStringLiteral("muted"), GetParam())));
    EXPECT_TRUE(hasStroke(shut, TORVPalette::instance().color(QStringLiteral("muted"), GetParam())));
}

TEST(LookSheets, DifferByNothingButColoursAndPictures)
{
    const auto bare = [](QString text, const char* mode) {
        text.replace(QRegularExpression(QStringLiteral("#[0-9a-fA-F]{6};")), QStringLiteral("#;"));
        return text.replace(QRegularExpression(QStringLiteral("#[0-9a-fA-F]{6}\\b")), QStringLiteral("#"))
            .replace(QLatin1String(mode), QLatin1String("_"));
    };
    EXPECT_EQ(bare(sheet(false), "_day.png"), bare(sheet(true), "_night.png"));
}

INSTANTIATE_TEST_SUITE_P(ByDayAndByNight, LookSheet, testing::Bool(),
                         [](const auto& mode) { return std::string(mode.param ? "Night" : "Day"); });
