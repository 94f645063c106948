// A process for tests to look at from outside: an application that takes the option "daemon" and then carries out the
// words of its command line one after the other. It ends with 0, with 1 where the start failed or ended early, with 2
// as the parent of a daemon, with 3 at a word that it doesn't know.
#include "settings/TORVConfig.h"
#include "utils/TORVApplication.h"
#include "utils/TORVLog.h"

#include <QMap>
#include <QSettings>
#include <QTextStream>

#include <cstdio>
#include <functional>
#include <thread>
#include <vector>

namespace
{

constexpr int UnknownWord = 3;

using Words = QStringList;
using Command = std::function<void(Words&)>;

class Probe final : public TORVApplication
{
public:
    using TORVApplication::TORVApplication;

    int init() override
    {
        addOption(QStringLiteral("daemon"), QStringLiteral("run in the background"));
        return TORVApplication::init();
    }
};

void print(const QString& line)
{
    QTextStream(stdout) << line << Qt::endl;
}

QString next(Words& words)
{
    return words.isEmpty() ? QString() : words.takeFirst();
}

void logLevels()
{
    TORVLog::Instance()->logError(QStringLiteral("an error"));
    TORVLog::Instance()->logWarning(QStringLiteral("a warning"));
    TORVLog::Instance()->logNotice(QStringLiteral("a notice"));
    TORVLog::Instance()->logDebug(QStringLiteral("a detail"));
}

void runLoop()
{
    TORVLog::Instance()->logNotice(QStringLiteral("looping as process %1").arg(TORVApplication::getMyPid()));
    QCoreApplication::exec();
}

void printService(const QString& name, int timeLimit_ms)
{
    const bool isRunning = TORVApplication::isServiceRunning(name, timeLimit_ms);
    print(name + (isRunning ? QLatin1String(" running") : QLatin1String(" stopped")));
}

void askServiceInThreads(const QString& name)
{
    constexpr int ThreadCount = 4;
    std::vector<std::thread> threads;
    threads.reserve(ThreadCount);
    for (int i = 0; i < ThreadCount; ++i) {
        threads.emplace_back([&name] { printService(name, TORVApplication::CommandTimeLimit_ms); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

void writeSetting(const QString& key, const QString& value)
{
    TORVConfig::instance()->get()->setValue(key, value);
    TORVConfig::instance()->release();
}

void printSetting(const QString& key)
{
    const QString value = TORVConfig::instance()->get()->value(key, QStringLiteral("(none)")).toString();
    TORVConfig::instance()->release();
    print(key + QLatin1Char('=') + value);
}

void printSettingsFile()
{
    const QString name = TORVConfig::instance()->get()->fileName();
    TORVConfig::instance()->release();
    print(name);
}

void printTranslations()
{
    print(QCoreApplication::translate("App", "Active username is %1"));
    print(QCoreApplication::translate("QPlatformTheme", "Cancel"));
}

void printNumber()
{
    std::printf("%.1f\n", 1.5);
    std::fflush(stdout);
}

const QMap<QString, Command> Commands = {
    {"levels", [](Words&) { logLevels(); }},
    {"loop", [](Words&) { runLoop(); }},
    {"number", [](Words&) { printNumber(); }},
    {"translate", [](Words&) { printTranslations(); }},
    {"log", [](Words& words) { TORVLog::Instance()->logInit(QStringLiteral("probe"), next(words)); }},
    {"service", [](Words& words) { printService(next(words), TORVApplication::CommandTimeLimit_ms); }},
    {"briefly", [](Words& words) { printService(next(words), 200); }},
    {"threads", [](Words& words) { askServiceInThreads(next(words)); }},
    {"home", [](Words& words) { print(TORVApplication::getUserHomeDirectory(next(words))); }},
    {"etc", [](Words&) { print(TORVApplication::getSystemConfigurationDirectory()); }},
    {"pidfile", [](Words&) { static_cast<TORVApplication*>(qApp)->updatePIDFile(); }},
    {"set",
     [](Words& words) {
         const QString key = next(words);
         writeSetting(key, next(words));
     }},
    {"get", [](Words& words) { printSetting(next(words)); }},
    {"file", [](Words&) { printSettingsFile(); }},
    {"path", [](Words&) { print(TORVConfig::getSettingsPath()); }},
    {"changeuser", [](Words& words) { TORVConfig::changeUser(next(words)); }},
    {"restoreuser", [](Words&) { TORVConfig::restoreUser(); }},
};

int carryOut(Words words)
{
    while (!words.isEmpty()) {
        const Command command = Commands.value(words.takeFirst());
        if (!command) {
            return UnknownWord;
        }
        command(words);
    }
    return 0;
}

Words wordsOf(const QStringList& arguments)
{
    Words words;
    for (const QString& argument : arguments.mid(1)) {
        if (TORVApplication::optionName(argument).isNull()) {
            words << argument;
        }
    }
    return words;
}

} // namespace

int main(int argc, char* argv[])
{
    TORVLog::Instance()->logError(QStringLiteral("too early for the log"));
    Probe probe(argc, argv);
    TORVApplication::setApplicationName(QStringLiteral("TORV3D"));
    probe.setVersion(QStringLiteral("7.8.9"));
    const int started = probe.init();
    if (started < 0) {
        return -started;
    }
    const int result = carryOut(wordsOf(QCoreApplication::arguments()));
    TORVConfig::destroy();
    return result;
}
