#pragma once

#include "settings/TORVGeneralSettings.h"
#include "ui_TORVPresetManager.h"

#include <QDialog>
#include <QString>
#include <QStringList>

class TORVDialogParentInterface;

/**
 * A list of named presets, in which the user applies, removes and adds. The first row is the built-in default; the
 * others are those of the window's general settings. Derived classes say what a preset is.
 *
 * Two viewers may work on one settings file: before a change is written, the list is read again, so that presets of the
 * other one stay.
 *
 * Thread: main thread only.
 * Ownership: the window outlives this object; its settings are asked for each time.
 */
class TORVPresetManager : public QDialog, public Ui_TORVPresetManagerClass
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVPresetManager)

public:
    ~TORVPresetManager() override;

    /// The selected row, -1 for none.
    int selectedItem() const;

Q_SIGNALS:
    /// The user wants this one: its row in the list of names, 0 for the default. The settings' list is the same.
    void presetItemApplied(int row);

public Q_SLOTS:
    /// What can't be the name of a preset can't be saved, and the user is told why.
    void nameChanged(QString const& name);

    /// Saves what the window shows now under the name in the field. A preset that has the name already is replaced.
    void clickedSave();
    void clickedApplySelected();

    /// The default stays.
    void clickedRemoveSelected();
    void clickedClose();

protected:
    TORVPresetManager(QWidget* parent, TORVDialogParentInterface* window);

    /// To be called by the constructor of the derived class.
    void showPresets(const QString& selected = QString());

    TORVDialogParentInterface& window() const { return *_window; }
    boost::shared_ptr<TORVGeneralSettings> settings() const;

    template <typename Preset>
    static QList<Preset> withPreset(QList<Preset> presets, int index, const Preset& preset)
    {
        if (index < presets.size()) {
            presets.replace(index, preset);
        } else {
            presets.append(preset);
        }
        return presets;
    }

    template <typename Preset>
    static QList<Preset> withoutPreset(QList<Preset> presets, int index)
    {
        presets.removeAt(index);
        return presets;
    }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// The default first.
    virtual QStringList presetNames() const = 0;

    /// Takes the list from the file.
    virtual void readPresets() = 0;

    /// A copy of what the window shows now, in place of the preset of that index or behind the last one.
    virtual void putPreset(int index, const QString& name) = 0;
    virtual void takePreset(int index) = 0;
    virtual void writePresets() = 0;

    void selectionChanged();
    QString nameToSave() const;
    void tell(const QString& text, const char* textRole);

    TORVDialogParentInterface* const _window;
};
