#include "settings/TORVExportSettings.h"

#include "settings/TORVConfig.h"

#include "support/SandboxedHome.h"

#include <QFile>

#include <gtest/gtest.h>

namespace
{

using Export = TORVExportSettings;

class TORVExportSettingsTest : public testing::Test
{
protected:
    ~TORVExportSettingsTest() override { TORVConfig::destroy(); }

    void write(const QByteArray& bytes) const { home.write(QStringLiteral(".config/Halmera/TORV3D.conf"), bytes); }

    QByteArray file() const
    {
        QFile bytes(home.settingsFile());
        return bytes.open(QIODevice::ReadOnly) ? bytes.readAll() : QByteArray();
    }

    Export loaded() const
    {
        Export settings;
        settings.load();
        return settings;
    }

    Export withLine(const QByteArray& line) const
    {
        write("[EXPORT]\n" + line + '\n');
        return loaded();
    }

    const SandboxedHome home;
};

const QByteArray EveryKey = "[EXPORT]\ncolorbar=false\ncompass=false\nheight=768\nlegend=false\noutputformat=JPEG\n"
                            "outputpath=/pictures\nwidth=1024\n";

void expectDefaults(const Export& settings)
{
    EXPECT_TRUE(settings.isColorBarShown());
    EXPECT_TRUE(settings.isLegendShown());
    EXPECT_TRUE(settings.isCompassShown());
    EXPECT_EQ(settings.getOutputFormat(), Export::FORMAT_TIFF);
    EXPECT_EQ(settings.getHeight(), 0);
    EXPECT_EQ(settings.getWidth(), 0);
}

} // namespace

TEST_F(TORVExportSettingsTest, HasDefaults)
{
    expectDefaults(Export());
    EXPECT_EQ(Export().getPath(), QLatin1String("."));
    expectDefaults(loaded());
    EXPECT_EQ(loaded().getPath(), QLatin1String("."));
}

TEST_F(TORVExportSettingsTest, ReadsEveryKeyOfAFileWrittenByHand)
{
    write(EveryKey);
    const Export settings = loaded();
    EXPECT_FALSE(settings.isColorBarShown());
    EXPECT_FALSE(settings.isLegendShown());
    EXPECT_FALSE(settings.isCompassShown());
    EXPECT_EQ(settings.getOutputFormat(), Export::FORMAT_JPEG);
    EXPECT_EQ(settings.getPath(), QLatin1String("/pictures"));
    EXPECT_EQ(settings.getHeight(), 768);
    EXPECT_EQ(settings.getWidth(), 1024);
}

TEST_F(TORVExportSettingsTest, WritesEveryKey)
{
    Export settings;
    settings.setColorBarShown(false);
    settings.setLegendShown(false);
    settings.setCompassShown(false);
    settings.setOutputFormat(Export::FORMAT_JPEG);
    settings.setPath(QStringLiteral("/pictures"));
    settings.setHeight(768);
    settings.setWidth(1024);
    settings.save();
    EXPECT_EQ(file(), EveryKey);
}

TEST_F(TORVExportSettingsTest, KeepsAFormatOfAnotherVersionInTheFile)
{
    Export settings = withLine("outputformat=WEBP");
    EXPECT_EQ(settings.getOutputFormat(), Export::FORMAT_UNKNOWN);
    settings.setWidth(800);
    settings.save();
    EXPECT_TRUE(file().contains("outputformat=WEBP\n"));
    EXPECT_TRUE(file().contains("width=800\n"));
}

TEST_F(TORVExportSettingsTest, BringsTheSizeIntoItsRange)
{
    EXPECT_EQ(withLine("width=-1").getWidth(), 0);
    EXPECT_EQ(withLine("width=2000000000").getWidth(), Export::MaxSide);
    EXPECT_EQ(withLine("height=wide").getHeight(), 0);
}

TEST_F(TORVExportSettingsTest, ResetsAllButThePath)
{
    write(EveryKey);
    Export settings = loaded();
    settings.reset();
    expectDefaults(settings);
    EXPECT_EQ(settings.getPath(), QLatin1String("/pictures"));
}

TEST_F(TORVExportSettingsTest, NamesTheFormats)
{
    EXPECT_EQ(Export::getOutputFormatFromString(QStringLiteral("TIFF")), 0);
    EXPECT_EQ(Export::getOutputFormatFromString(QStringLiteral("PNG")), 1);
    EXPECT_EQ(Export::getOutputFormatFromString(QStringLiteral("JPEG")), 2);
    EXPECT_EQ(Export::getOutputFormatFromString(QStringLiteral("tiff")), 3);
    EXPECT_EQ(Export::getOutputFormatFromString(QString()), 3);
    EXPECT_EQ(Export::getSupportedOutputFormats(),
              QStringList({QStringLiteral("TIFF"), QStringLiteral("PNG"), QStringLiteral("JPEG")}));
    EXPECT_EQ(Export().getOutputFormatString(), QLatin1String("TIFF"));
    EXPECT_EQ(Export::getDefaultOutputFormatString(), QLatin1String("Default"));
}

TEST_F(TORVExportSettingsTest, KnowsTheEndingOfAFormat)
{
    EXPECT_EQ(Export::getOutputFileExtension(Export::FORMAT_TIFF), QLatin1String("tiff"));
    EXPECT_EQ(Export::getOutputFileExtension(Export::FORMAT_PNG), QLatin1String("png"));
    EXPECT_EQ(Export::getOutputFileExtension(Export::FORMAT_JPEG), QLatin1String("jpg"));
    EXPECT_EQ(Export::getOutputFileExtension(Export::FORMAT_UNKNOWN), QLatin1String("tiff"));
    EXPECT_EQ(Export().getOutputFileExtension(), QLatin1String("tiff"));
}

TEST_F(TORVExportSettingsTest, OffersSizes)
{
    EXPECT_EQ(Export::getImageSizePresets(), QStringList({QStringLiteral("1900x1200"), QStringLiteral("1600x1200"),
                                                          QStringLiteral("1280x768"), QStringLiteral("1024x768")}));
}
