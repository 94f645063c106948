#pragma once

#include "gui/TORVPresetManager.h"

/// Presets of what a scene shows. Thread: main thread only.
class TORVDisplayStateManager final : public TORVPresetManager
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVDisplayStateManager)

public:
    TORVDisplayStateManager(QWidget* parent, TORVDialogParentInterface* window);
    ~TORVDisplayStateManager() override;

private:
    QStringList presetNames() const override;
    void readPresets() override;
    void putPreset(int index, const QString& name) override;
    void takePreset(int index) override;
    void writePresets() override;
};
