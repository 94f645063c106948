// A process for tests to look at from outside: it loads and saves settings as the words of its command line tell.
//   directories            prints the three directories of the general settings
//   save DIRECTORY         saves general settings with that 3-D directory
//   values                 prints whether the numbers of the last "churn" all belong to one save, and which
//   churn                  saves general settings for ever and prints the number of each save when it is done
//   borrow SECONDS         two threads load and save settings for that long
//   background FILE        prints the status of the file, activates the output, prints whether that was saved
#include "datalib/TORVDataType.h"
#include "settings/TORVBackgroundSettings.h"
#include "settings/TORVConfig.h"
#include "settings/TORVGeneralSettings.h"
#include "settings/TORVProductSettings.h"
#include "utils/TORVLog.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTextStream>

#include <thread>

namespace
{

constexpr int UnknownWord = 3;
constexpr int ReflectivityType = 2;

void print(const QString& line)
{
    QTextStream(stdout) << line << Qt::endl;
}

void printDirectories()
{
    const TORVGeneralSettings general;
    print(general.get3DDir() + QLatin1Char('|') + general.get2DDir() + QLatin1Char('|') + general.getGeoDir());
}

void saveDirectory(const QString& directory)
{
    TORVGeneralSettings general;
    general.set3DDir(directory);
    general.save();
}

// Every value tells the number of its save.
void save(TORVGeneralSettings& general, int number)
{
    const QString text = QStringLiteral("/data/%1").arg(number);
    general.set3DDir(text);
    general.set2DDir(text);
    general.setGeoDir(text);
    general.setLiveSite(text);
    general.setTimeWindow(number);
    general.save();
}

void churn()
{
    TORVGeneralSettings general;
    for (int number = general.getTimeWindow() + 1;; ++number) {
        save(general, number);
        print(QString::number(number));
    }
}

void printValues()
{
    const TORVGeneralSettings general;
    const int number = general.getTimeWindow();
    const QString text = QStringLiteral("/data/%1").arg(number);
    const bool isWhole = general.get3DDir() == text && general.get2DDir() == text && general.getGeoDir() == text &&
                         general.getLiveSite() == text;
    print((isWhole ? QLatin1String("whole ") : QLatin1String("torn ")) + QString::number(number));
}

// Counts in the file: a save that got lost shows at the end.
int count(const QString& configuration, const QElapsedTimer& clock, qint64 limit_ms)
{
    const TORVDataType type(ReflectivityType);
    int saves = 0;
    while (clock.elapsed() < limit_ms) {
        TORVProductSettings settings(QStringLiteral("CAPPI"), configuration, type);
        settings.setVolumeValueLow(++saves);
        settings.save();
        settings.load(QStringLiteral("CAPPI"), configuration, type);
        if (static_cast<int>(settings.getVolumeValueLow()) != saves) {
            qFatal("save %d of %s is not in the file", saves, qUtf8Printable(configuration));
        }
    }
    return saves;
}

void borrow(int seconds)
{
    QElapsedTimer clock;
    clock.start();
    int saves[2] = {};
    std::thread other([&] { saves[1] = count(QStringLiteral("V"), clock, seconds * 1000); });
    saves[0] = count(QStringLiteral("Z"), clock, seconds * 1000);
    other.join();
    print(QStringLiteral("%1 and %2 saves").arg(saves[0]).arg(saves[1]));
}

void changeBackground(const QString& path)
{
    TORVBackgroundSettings settings(path);
    print(QStringLiteral("status %1").arg(settings.status()));
    settings.setActivated(true);
    print(settings.save() ? QStringLiteral("saved") : QStringLiteral("not saved"));
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Halmera"));
    QCoreApplication::setApplicationName(QStringLiteral("TORV3D"));
    TORVLog::Instance();
    const QStringList words = QCoreApplication::arguments();
    const QString command = words.value(1);
    if (command == QLatin1String("directories")) {
        printDirectories();
    } else if (command == QLatin1String("save")) {
        saveDirectory(words.value(2));
    } else if (command == QLatin1String("values")) {
        printValues();
    } else if (command == QLatin1String("churn")) {
        churn();
    } else if (command == QLatin1String("borrow")) {
        borrow(words.value(2).toInt());
    } else if (command == QLatin1String("background")) {
        changeBackground(words.value(2));
    } else {
        return UnknownWord;
    }
    TORVConfig::destroy();
    return 0;
}
