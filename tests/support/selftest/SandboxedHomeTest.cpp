#include "support/SandboxedHome.h"

#include <QDir>
#include <QSettings>

#include <gtest/gtest.h>

TEST(SandboxedHome, TakesSettingsInAndGivesTheOldHomeBack)
{
    const QByteArray before = qgetenv("HOME");
    {
        const SandboxedHome home;
        EXPECT_EQ(qgetenv("HOME"), home.path().toLocal8Bit());
        const QSettings settings(QStringLiteral("Halmera"), QStringLiteral("TORV3D"));
        EXPECT_EQ(settings.fileName(), home.settingsFile());
    }
    EXPECT_EQ(qgetenv("HOME"), before);
}

TEST(SandboxedHome, WritesFilesWithTheirDirectories)
{
    const SandboxedHome home;
    const QString path = home.write(QStringLiteral("a/b/c.txt"), "hello");
    EXPECT_EQ(QFileInfo(path).size(), 5);
    EXPECT_TRUE(path.startsWith(home.path()));
}
