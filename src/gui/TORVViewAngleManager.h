#pragma once

#include "gui/TORVPresetManager.h"

/// Presets of where its camera stands. Thread: main thread only.
class TORVViewAngleManager final : public TORVPresetManager
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVViewAngleManager)

public:
    TORVViewAngleManager(QWidget* parent, TORVDialogParentInterface* window);
    ~TORVViewAngleManager() override;

private:
    QStringList presetNames() const override;
    void readPresets() override;
    void putPreset(int index, const QString& name) override;
    void takePreset(int index) override;
    void writePresets() override;
};
