#include "gui/TORVDisplayStateManager.h"

#include "gui/TORVDialogParentInterface.h"

#include <boost/make_shared.hpp>

TORVDisplayStateManager::TORVDisplayStateManager(QWidget* parent, TORVDialogParentInterface* window)
    : TORVPresetManager(parent, window)
{
    setWindowTitle(tr("Display presets"));
    showPresets();
}

TORVDisplayStateManager::~TORVDisplayStateManager() = default;

QStringList TORVDisplayStateManager::presetNames() const
{
    return settings()->getDisplayStateNames();
}

// What the file has of the state at exit is of no interest.
void TORVDisplayStateManager::readPresets()
{
    settings()->setDisplayStates({});
    settings()->loadDisplayStates(boost::make_shared<TORVDisplayState>());
}

void TORVDisplayStateManager::putPreset(int index, const QString& name)
{
    const auto preset = boost::make_shared<TORVDisplayState>();
    preset->copyState(*window().getCurrentDisplayState());
    preset->setName(name);
    settings()->setDisplayStates(withPreset(settings()->getDisplayStates(), index, preset));
}

void TORVDisplayStateManager::takePreset(int index)
{
    settings()->setDisplayStates(withoutPreset(settings()->getDisplayStates(), index));
}

void TORVDisplayStateManager::writePresets()
{
    settings()->saveDisplayStates(window().getCurrentDisplayState());
}
