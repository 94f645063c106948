#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

/**
 * A program run to its end as a user would run it: its own process, environment and working directory.
 *
 * Thread: main thread of the test.
 */
class ProcessRun final
{
public:
    struct Outcome
    {
        int exitCode = -1; ///< -1: it did not end by itself in time, or crashed
        QString output;
        QString errors;

        /// Lines of the standard error that the program's own log wrote.
        QStringList logLines() const;
    };

    /// The environment is the test's own, with a Qt platform that needs no display and texts in UTF-8.
    explicit ProcessRun(QString program);

    /// Sets a variable, or takes it away where `value` is null.
    ProcessRun& with(const QString& name, const QString& value);
    ProcessRun& in(const QString& directory);

    /// In a mount name space of its own, after a shell has run `preparation` as root of a user name space. Where the
    /// system refuses this, `isPrivatePossible()` says so beforehand.
    ProcessRun& privately(const QString& preparation);
    static bool isPrivatePossible();

    Outcome operator()(const QStringList& arguments) const;

private:
    QString _program;
    QProcessEnvironment _environment;
    QString _directory;
    QString _preparation;
};

#define TORV_NEEDS_PRIVATE_MOUNTS()                                                                                    \
    if (!ProcessRun::isPrivatePossible())                                                                              \
    GTEST_SKIP() << "this system lets nobody put files of a test in the place of its own (unshare, mount)"
