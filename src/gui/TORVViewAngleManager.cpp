#include "gui/TORVViewAngleManager.h"

#include "gui/TORVDialogParentInterface.h"

#include <boost/make_shared.hpp>

TORVViewAngleManager::TORVViewAngleManager(QWidget* parent, TORVDialogParentInterface* window)
    : TORVPresetManager(parent, window)
{
    setWindowTitle(tr("View presets"));
    showPresets();
}

TORVViewAngleManager::~TORVViewAngleManager() = default;

QStringList TORVViewAngleManager::presetNames() const
{
    return settings()->getViewAngleNames();
}

// What the file has of the view at exit is of no interest.
void TORVViewAngleManager::readPresets()
{
    settings()->setViewAngles({});
    settings()->loadViewAngles(boost::make_shared<TORVViewAngle>());
}

void TORVViewAngleManager::putPreset(int index, const QString& name)
{
    const auto preset = boost::make_shared<TORVViewAngle>(*window().getCurrentViewAngle());
    preset->setName(name);
    settings()->setViewAngles(withPreset(settings()->getViewAngles(), index, preset));
}

void TORVViewAngleManager::takePreset(int index)
{
    settings()->setViewAngles(withoutPreset(settings()->getViewAngles(), index));
}

void TORVViewAngleManager::writePresets()
{
    settings()->saveViewAngles(window().getCurrentViewAngle());
}
