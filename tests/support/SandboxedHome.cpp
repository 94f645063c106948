#include "support/SandboxedHome.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <gtest/gtest.h>

namespace
{

const char* const Home = "HOME";
const char* const ConfigHome = "XDG_CONFIG_HOME";
const char* const CacheHome = "XDG_CACHE_HOME";

void restore(const char* name, const QByteArray& value)
{
    if (value.isNull()) {
        qunsetenv(name);
    } else {
        qputenv(name, value);
    }
}

} // namespace

SandboxedHome::SandboxedHome() : _home(qgetenv(Home)), _configHome(qgetenv(ConfigHome)), _cacheHome(qgetenv(CacheHome))
{
    EXPECT_TRUE(_directory.isValid());
    qputenv(Home, QFile::encodeName(_directory.path()));
    qunsetenv(ConfigHome);
    qunsetenv(CacheHome);
    QDir(_directory.path()).mkpath(QStringLiteral(".config/Halmera"));
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, filePath(QStringLiteral(".config")));
}

SandboxedHome::~SandboxedHome()
{
    restore(Home, _home);
    restore(ConfigHome, _configHome);
    restore(CacheHome, _cacheHome);
}

QString SandboxedHome::settingsFile() const
{
    return filePath(QStringLiteral(".config/Halmera/TORV3D.conf"));
}

QString SandboxedHome::write(const QString& name, const QByteArray& bytes) const
{
    const QString path = filePath(name);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(bytes), bytes.size());
    // Settings are kept in memory and read again only when size or time of their file have changed, and the clock of a
    // file system may tick as seldom as every four milliseconds.
    static int later = 0;
    EXPECT_TRUE(file.flush());
    EXPECT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(++later), QFileDevice::FileModificationTime));
    return path;
}
