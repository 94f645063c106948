#include "gui/TORVGUI.h"

#include "settings/TORVConfig.h"
#include "utils/TORVLog.h"

#include <QSettings>
#include <QTextStream>
#include <QTimer>

namespace
{

void print(const QString& line)
{
    QTextStream(stdout) << line << Qt::endl;
}

} // namespace

TORVGUI::TORVGUI() : fileExit(new QAction(this))
{
    connect(TORVLog::Instance(), SIGNAL(historyAdd(QString)), this, SLOT(historyAdd(QString)));
    print(QLatin1String("settings: ") + TORVConfig::instance()->get()->fileName());
    TORVConfig::instance()->release();
}

TORVGUI::~TORVGUI()
{
    print(QStringLiteral("gone"));
}

void TORVGUI::setWindowTitle(const QString& title)
{
    print(QLatin1String("title: ") + title);
}

void TORVGUI::show()
{
    print(QStringLiteral("shown"));
    QTimer::singleShot(0, fileExit, &QAction::trigger);
}

void TORVGUI::historyAdd(QString const& text)
{
    print(QLatin1String("history: ") + text);
}
