#pragma once

#include <QString>
#include <QTemporaryDir>

/**
 * A home directory of its own for as long as the object lives: HOME and the XDG variables point into it, and so do
 * settings made from then on. The old environment comes back at the end.
 *
 * Thread: main thread of the test, while no other thread reads the environment.
 */
class SandboxedHome final
{
public:
    SandboxedHome();
    ~SandboxedHome();
    SandboxedHome(const SandboxedHome&) = delete;
    SandboxedHome& operator=(const SandboxedHome&) = delete;
    QString path() const { return _directory.path(); }
    QString filePath(const QString& name) const { return _directory.filePath(name); }

    /// The user's settings file of the viewer in this home; its directory is there.
    QString settingsFile() const;

    /// Writes a file below the home, with the directories it needs.
    QString write(const QString& name, const QByteArray& bytes) const;

private:
    QTemporaryDir _directory;
    QByteArray _home;
    QByteArray _configHome;
    QByteArray _cacheHome;
};
