#include "gui/TORVHelp.h"

#include "gui/TORVHelpAction.h"
#include "utils/TORVApplication.h"
#include "utils/TORVLog.h"
#include "utils/TORVSettingsReader.h"

#include <QSettings>

namespace
{

QString readText(const QSettings& settings, const char* key)
{
    return TORVSettingsReader::text(settings.value(QLatin1String(key)), QString());
}

} // namespace

TORVHelp::TORVHelp(QWidget* parent) : QMenu(parent)
{
    TORVLog* const log = TORVLog::Instance();
    log->logDebug(QStringLiteral("Create help menu"));
    QSettings settings(TORVApplication::ORGANIZATION_NAME, QStringLiteral("TORV3D"));
    settings.beginGroup(QStringLiteral("HELP"));
    const int size = settings.beginReadArray(QStringLiteral("HELPITEMS"));
    log->logDebug(QStringLiteral("   ... found  %1 help items").arg(size));
    const QVector<int> indexes = TORVSettingsReader::arrayIndexes(settings, size);
    for (const int index : indexes) {
        settings.setArrayIndex(index);
        addItem(settings);
    }
    settings.endArray();
    settings.endGroup();
}

void TORVHelp::addItem(const QSettings& settings)
{
    const QString title = readText(settings, "title");
    auto* const action = new TORVHelpAction(title, readText(settings, "command"), readText(settings, "arg"), this);
    if (title == QLatin1String("SEPARATOR")) {
        action->setSeparator(true);
    } else {
        connect(action, &QAction::triggered, action, &TORVHelpAction::launch);
    }
    addAction(action);
    TORVLog::Instance()->logDebug(QLatin1String("   ... add help item ") + title + QLatin1String(" to help menu"));
}
