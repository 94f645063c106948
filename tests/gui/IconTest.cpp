// Whether each icon is there in each form and mode, in the colour that it should have.
#include "gui/TORVPalette.h"

#include <QFile>
#include <QImage>
#include <QTextStream>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace
{

constexpr double Grid = 24.0;
constexpr double ClearEdge = 2.5;    // grid units to the middle of the outermost stroke
constexpr double HalfStroke = 0.875; // grid units
constexpr int Opaque = 255;

struct Icon
{
    const char* name;
    int size;
    bool isCheckable = false;
    bool isOnAccent = false;
};

const Icon Icons[] = {
    {"fileOpen", 24},
    {"fileCloseData", 24},
    {"fileExit", 24},
    {"productInfo", 24, true},
    {"cursorTool", 24, true},
    {"extraWindow", 24, true},
    {"snapshot", 24},
    {"snapshot_rec", 24},
    {"animation", 24, true},
    {"floatsHide", 24},
    {"floatsShow", 24},
    {"fullScreen", 24, true},
    {"nightMode", 24, true},
    {"settings", 24, true},
    {"help", 24},
    {"play", 24, false, true},
    {"pause", 24, false, true},
    {"anim_prev", 20},
    {"anim_next", 20},
    {"layer_radar", 20, true},
    {"layer_outline", 20, true},
    {"layer_3dproduct", 20, true},
    {"layer_2dproduct", 20, true},
    {"layer_geo", 20, true},
    {"layer_terrain", 20, true},
    {"layer_latlongrid", 20, true},
    {"layer_rangerings", 20, true},
    {"layer_landmarks", 20, true},
    {"alpha", 20},
    {"eye_on", 20},
    {"eye_off", 20},
    {"expand", 18, true},
    {"browse", 18},
    {"home_point", 18},
    {"copy", 18},
    {"save_image", 18},
    {"save_image_on", 18, false, true},
    {"print", 18},
    {"reset", 18},
    {"clear_cache", 18},
    {"preset_save", 18},
    {"preset_apply", 18},
    {"preset_remove", 18},
    {"live", 16},
    {"archive", 16},
    {"site", 16},
    {"clock", 16},
    {"arrow_down", 16},
    {"arrow_up", 16},
    {"arrow_right", 16},
    {"check", 16},
    {"check_on", 16, false, true},
    {"radio", 16},
    {"radio_on", 16, false, true},
    {"window_close", 16},
    {"dock_float", 16},
    {"warning", 24},
    {"error", 24},
    {"info", 24},
};

// Where a shape is that is filled lightly in the selected form: a place away from strokes, in grid units.
struct Tone
{
    const char* name;
    double x;
    double y;
};

const Tone Tones[] = {
    {"productInfo", 7.5, 14.5},      {"cursorTool", 9.6, 9.6},        {"extraWindow", 9.5, 16.5},
    {"animation", 11.0, 7.75},       {"nightMode", 7.0, 14.0},        {"settings", 14.0, 6.0},
    {"layer_3dproduct", 12.0, 17.0}, {"layer_2dproduct", 17.6, 9.4},  {"layer_geo", 5.8, 8.4},
    {"layer_terrain", 8.5, 15.5},    {"layer_rangerings", 12.0, 9.1}, {"layer_landmarks", 12.0, 16.0},
};

QImage picture(const Icon& icon, const char* form, bool night, const char* scale = "")
{
    const QString name =
        QLatin1String(icon.name) + QLatin1String(form) + QLatin1String(night ? "night" : "day") + QLatin1String(scale);
    QImage image(QLatin1String(":/icons/") + name + QLatin1String(".png"));
    image.setDevicePixelRatio(1.0);
    return image.convertToFormat(QImage::Format_ARGB32);
}

QColor colour(const char* name, bool night)
{
    return TORVPalette::instance().color(QLatin1String(name), night);
}

// Apart from what is lost where colours are multiplied by their opacity and divided again.
bool isSame(const QColor& one, const QColor& other)
{
    return std::abs(one.red() - other.red()) <= 2 && std::abs(one.green() - other.green()) <= 2 &&
           std::abs(one.blue() - other.blue()) <= 2;
}

double meanDifference(const QImage& one, const QImage& other)
{
    double sum = 0.0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            sum += std::abs(qAlpha(one.pixel(x, y)) - qAlpha(other.pixel(x, y)));
        }
    }
    return sum / (double(one.width()) * one.height());
}

// The colour of what covers its pixels wholly; not valid where there is more than one.
QColor strokeColor(const QImage& image)
{
    QColor found;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            if (color.alpha() != Opaque || (found.isValid() && isSame(color, found))) {
                continue;
            }
            if (found.isValid()) {
                return {};
            }
            found = color;
        }
    }
    return found;
}

int largestAlphaOutside(const QImage& image, double edge)
{
    const double scale = image.width() / Grid;
    int largest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const double inside = std::min({x + 1.0, y + 1.0, double(image.width() - x), double(image.height() - y)});
            if (inside / scale <= edge) {
                largest = std::max(largest, qAlpha(image.pixel(x, y)));
            }
        }
    }
    return largest;
}

std::string label(const Icon& icon, const char* form, bool night)
{
    return std::string(icon.name) + form + (night ? "night" : "day");
}

const Icon& iconOf(const char* name)
{
    return *std::find_if(std::begin(Icons), std::end(Icons),
                         [name](const Icon& icon) { return std::string(icon.name) == name; });
}

template <typename Check>
void forEachIconAndMode(Check check)
{
    for (const Icon& icon : Icons) {
        check(icon, false);
        check(icon, true);
    }
}

} // namespace

TEST(Icons, AreTheOnesThatTheListNames)
{
    QFile file(QStringLiteral(TORV_SOURCE_DIR "/resources/icons/icons.txt"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QStringList listed;
    for (QTextStream stream(&file); !stream.atEnd();) {
        const QString line = stream.readLine();
        if (!line.isEmpty() && !line.startsWith(QLatin1Char('#'))) {
            listed << line.section(QLatin1Char(' '), 0, 0);
        }
    }
    QStringList expected;
    for (const Icon& icon : Icons) {
        expected << QLatin1String(icon.name);
    }
    EXPECT_EQ(listed, expected);
}

TEST(Icons, AreThereInBothModesAndThreeScales)
{
    forEachIconAndMode([](const Icon& icon, bool night) {
        for (const char* const form : {"_", "_disabled_"}) {
            EXPECT_EQ(picture(icon, form, night).width(), icon.size) << label(icon, form, night);
            EXPECT_EQ(picture(icon, form, night, "@1.5x").width(), icon.size * 3 / 2) << label(icon, form, night);
            EXPECT_EQ(picture(icon, form, night, "@2x").width(), icon.size * 2) << label(icon, form, night);
        }
    });
}

TEST(Icons, HaveASelectedFormOnlyWhereTheyCanBeChecked)
{
    forEachIconAndMode([](const Icon& icon, bool night) {
        EXPECT_EQ(!picture(icon, "_selected_", night).isNull(), icon.isCheckable) << label(icon, "_selected_", night);
    });
}

TEST(Icons, AreDrawnInTheColourOfTheirForm)
{
    forEachIconAndMode([](const Icon& icon, bool night) {
        if (std::string(icon.name) == "snapshot_rec") {
            return; // has a dot in a colour of its own
        }
        const char* const plain = icon.isOnAccent ? "on_accent" : "muted";
        const char* const disabled = icon.isOnAccent ? "on_accent" : "disabled";
        EXPECT_TRUE(isSame(strokeColor(picture(icon, "_", night, "@2x")), colour(plain, night)))
            << label(icon, "_", night);
        EXPECT_TRUE(isSame(strokeColor(picture(icon, "_disabled_", night, "@2x")), colour(disabled, night)))
            << label(icon, "_disabled_", night);
        if (icon.isCheckable) {
            EXPECT_TRUE(isSame(strokeColor(picture(icon, "_selected_", night, "@2x")), colour("accent", night)))
                << label(icon, "_selected_", night);
        }
    });
}

TEST(Icons, KeepTheirShapeWhenDisabled)
{
    forEachIconAndMode([](const Icon& icon, bool night) {
        EXPECT_EQ(picture(icon, "_", night).convertToFormat(QImage::Format_Alpha8),
                  picture(icon, "_disabled_", night).convertToFormat(QImage::Format_Alpha8))
            << label(icon, "_disabled_", night);
    });
}

TEST(Icons, LeaveAClearEdge)
{
    forEachIconAndMode([](const Icon& icon, bool night) {
        EXPECT_EQ(largestAlphaOutside(picture(icon, "_", night, "@2x"), ClearEdge - HalfStroke), 0)
            << label(icon, "_", night);
    });
}

TEST(Icons, FillTheirShapeWithAThirdOfTheAccentWhenSelected)
{
    for (const Tone& tone : Tones) {
        for (const bool night : {false, true}) {
            const Icon& icon = iconOf(tone.name);
            const QImage image = picture(icon, "_selected_", night, "@2x");
            const double scale = image.width() / Grid;
            const QPoint place(int(tone.x * scale), int(tone.y * scale));
            const QColor filled = image.pixelColor(place);
            EXPECT_NEAR(filled.alphaF(), 0.3, 0.01) << label(icon, "_selected_", night);
            EXPECT_NEAR(filled.red(), colour("accent", night).red(), 4) << label(icon, "_selected_", night);
            EXPECT_NEAR(filled.blue(), colour("accent", night).blue(), 4) << label(icon, "_selected_", night);
            EXPECT_EQ(picture(icon, "_", night, "@2x").pixelColor(place).alpha(), 0) << label(icon, "_", night);
        }
    }
}

TEST(Icons, KeepTheirShapeWhenSelectedWithoutAFill)
{
    for (const char* const name : {"layer_radar", "layer_outline", "layer_latlongrid"}) {
        const Icon& icon = iconOf(name);
        EXPECT_EQ(picture(icon, "_", false).convertToFormat(QImage::Format_Alpha8),
                  picture(icon, "_selected_", false).convertToFormat(QImage::Format_Alpha8))
            << name;
    }
}

TEST(Icons, TurnInwardWhenFullScreenIsSelected)
{
    const Icon& icon = iconOf("fullScreen");
    // The corner of the upper left bracket, and where that corner lies when it points inward.
    EXPECT_GT(qAlpha(picture(icon, "_", false).pixel(3, 6)), 0);
    EXPECT_EQ(qAlpha(picture(icon, "_", false).pixel(8, 5)), 0);
    EXPECT_GT(qAlpha(picture(icon, "_selected_", false).pixel(8, 5)), 0);
    EXPECT_EQ(qAlpha(picture(icon, "_selected_", false).pixel(3, 6)), 0);
}

TEST(Icons, PointUpwardWhenUnfolded)
{
    const Icon& icon = iconOf("expand");
    const QImage folded = picture(icon, "_", false, "@2x");
    const QImage unfolded = picture(icon, "_selected_", false, "@2x");
    EXPECT_LT(meanDifference(folded, unfolded.mirrored()), 2.0);
    EXPECT_GT(meanDifference(folded, unfolded), 10.0);
}

TEST(Icons, MirrorTheStepsOfTheAnimation)
{
    const QImage previous = picture(iconOf("anim_prev"), "_", false, "@2x");
    const QImage next = picture(iconOf("anim_next"), "_", false, "@2x");
    EXPECT_LT(meanDifference(previous, next.mirrored(true, false)), 2.0);
    EXPECT_GT(meanDifference(previous, next), 10.0);
}

TEST(Icons, ShowARecordingByADotInTheColourOfErrors)
{
    for (const bool night : {false, true}) {
        const QImage image = picture(iconOf("snapshot_rec"), "_", night);
        EXPECT_EQ(image.pixelColor(19, 6), colour("err_fill", night));
        EXPECT_EQ(image.pixelColor(17, 6), colour("err_fill", night)); // its radius is 3.4
    }
}

TEST(Icons, TellWarningsErrorsAndNewsApartByShape)
{
    const auto shape = [](const char* name) {
        return picture(iconOf(name), "_", false).convertToFormat(QImage::Format_Alpha8);
    };
    EXPECT_NE(shape("warning"), shape("error"));
    EXPECT_NE(shape("error"), shape("info"));
    EXPECT_NE(shape("info"), shape("warning"));
}

TEST(Icons, HoldTheApplicationsOwnInEverySize)
{
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        const QImage image(QStringLiteral(":/icons/application_%1.png").arg(size));
        EXPECT_EQ(image.size(), QSize(size, size));
        EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0) << "the corners are round";
        EXPECT_EQ(image.pixelColor(size / 2, size / 16), QColor(0x18, 0x15, 0x12)) << size;
    }
    // The top of the outer and of the inner dome, 1.5 px thick at 24: 16 px at 256.
    const QImage large(QStringLiteral(":/icons/application_256.png"));
    EXPECT_EQ(large.pixelColor(128, 50), QColor(0xFA, 0xD9, 0x00));
    EXPECT_EQ(large.pixelColor(128, 62), QColor(0xFA, 0xD9, 0x00));
    EXPECT_EQ(large.pixelColor(128, 131), QColor(0xF7, 0x7C, 0x10));
}
