#include "gui/TORVGUI.h"
#include "settings/TORVConfig.h"
#include "utils/TORVApplication.h"
#include "utils/TORVLog.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QIcon>
#include <QSurfaceFormat>
#include <QTextStream>
#include <QVTKOpenGLNativeWidget.h>

#include <algorithm>
#include <initializer_list>

namespace
{

const QString ApplicationName = QStringLiteral("TORV3D");
const QString OptionUser = QStringLiteral("user");

struct CommandLine
{
    int count;
    char** arguments;

    // For the time before the application object can be asked.
    bool hasAny(std::initializer_list<const char*> names) const
    {
        return std::any_of(arguments + std::min(count, 1), arguments + count, [names](const char* argument) {
            const QString name = TORVApplication::optionName(QString::fromLocal8Bit(argument));
            return std::any_of(names.begin(), names.end(), [&name](const char* n) { return name == QLatin1String(n); });
        });
    }
};

bool isPlatformChosen(const CommandLine& line)
{
    return !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") || line.hasAny({"platform"});
}

bool isDisplayNamed(const CommandLine& line)
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           line.hasAny({"display"});
}

bool isSettingsDirectoryThere(const QString& user)
{
    return QFileInfo(TORVApplication::getUserSettingsDirectory(user)).isDir();
}

/// The name that the session runs under; its settings come into force if it has any.
QString chooseUser(const TORVApplication& application)
{
    const QString user = application.getOptionValue(OptionUser);
    if (isSettingsDirectoryThere(user)) {
        TORVConfig::changeUser(user);
    }
    return user.isEmpty() ? TORVApplication::getLoginUser() : user;
}

void reportNoDisplay()
{
    const QString text = QCoreApplication::translate(
        "App", "There is no display to draw on: neither DISPLAY nor WAYLAND_DISPLAY is set.");
    QTextStream(stderr) << text << Qt::endl;
}

QIcon applicationIcon()
{
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256}) {
        icon.addFile(QStringLiteral(":/icons/application_%1.png").arg(size));
    }
    return icon;
}

int runWindow(const QString& user)
{
    QApplication::setWindowIcon(applicationIcon());
    TORVGUI window;
    window.setWindowTitle(QCoreApplication::translate("MainWindow", "Halmera TORV 3DView"));
    QObject::connect(window.fileExit, &QAction::triggered, qApp, &QCoreApplication::quit);
    window.show();
    if (isSettingsDirectoryThere(user)) {
        TORVLog::Instance()->logHistory(QCoreApplication::translate("App", "Active username is %1").arg(user));
    }
    return QApplication::exec();
}

} // namespace

int main(int argc, char* argv[])
{
    const CommandLine line = {argc, argv};
    const bool canDraw = isPlatformChosen(line) || isDisplayNamed(line);
    // A run that only prints words needs no display, and Qt would end the process for want of one.
    if (!isPlatformChosen(line) && (!canDraw || line.hasAny({"help", "version"}))) {
        qputenv("QT_QPA_PLATFORM", "minimal");
    }
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QSurfaceFormat::setDefaultFormat(QVTKOpenGLNativeWidget::defaultFormat());
    TORVLog::Instance();

    TORVApplication application(argc, argv);
    application.addOption(OptionUser, QStringLiteral("user='username', use settings of 'username'"));
    TORVApplication::setApplicationName(ApplicationName);
    application.setVersion(TORVApplication::VERSION);
    if (application.init() < 0) {
        return 0;
    }
    if (!canDraw) {
        reportNoDisplay();
        return 1;
    }
    application.setupNativeSignals(); // the end of a session must not lose what an exit would save
    const int result = runWindow(chooseUser(application));
    TORVConfig::destroy();
    return result;
}
