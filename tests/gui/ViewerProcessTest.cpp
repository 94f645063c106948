// The program itself with its window, as the session sees it.

#include "support/SandboxedHome.h"

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>

#include <gtest/gtest.h>

namespace
{

constexpr int Patience_ms = 120000;

class ViewerProcessTest : public testing::Test
{
protected:
    // Until the window has been drawn.
    bool start()
    {
        // The program itself can't tell the sanitizers of Qt's mutexes and of what drivers leave, as these tests can.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("TSAN_OPTIONS"), qEnvironmentVariable("TSAN_OPTIONS") + ":exitcode=0");
        environment.insert(QStringLiteral("ASAN_OPTIONS"), qEnvironmentVariable("ASAN_OPTIONS") + ":detect_leaks=0");
        viewer.setProcessEnvironment(environment);
        viewer.setProcessChannelMode(QProcess::MergedChannels);
        viewer.start(QStringLiteral(TORV_VIEWER), {QStringLiteral("--loglevel=3")});
        while (!_output.contains("..rendering took")) {
            if (!viewer.waitForReadyRead(Patience_ms)) {
                return false;
            }
            _output += viewer.readAll();
        }
        return true;
    }

    const SandboxedHome home;
    QProcess viewer;

private:
    QByteArray _output;
};

} // namespace

TEST_F(ViewerProcessTest, SavesWhatAnExitWouldSaveWhenTheSessionEndsIt)
{
    ASSERT_TRUE(start());
    viewer.terminate(); // SIGTERM
    ASSERT_TRUE(viewer.waitForFinished(Patience_ms));
    EXPECT_EQ(viewer.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(viewer.exitCode(), 0);
    QFile settings(home.settingsFile());
    ASSERT_TRUE(settings.open(QIODevice::ReadOnly));
    const QByteArray text = settings.readAll();
    EXPECT_TRUE(text.contains("mainwindowpos")) << text.constData();
    EXPECT_TRUE(text.contains("displayStateName=Custom")) << text.constData();
}
