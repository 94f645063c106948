#pragma once

#include "gui/TORVToolDialogInterface.h"
#include "settings/TORVGeneralSettings.h"

#include <QDialog>
#include <QPointer>

#include <array>
#include <memory>

class TORVDialogParentInterface;
class TORVDirectoryEdit;

namespace Ui
{
class TORVGeneralSettingsDialog;
}

/**
 * The window of the settings that aren't tied to a product. It works on settings of its own: it loads them when it is
 * shown, and Apply saves them and tells so. Between the two other windows may save theirs: what has no control here is
 * loaded afresh before Apply saves.
 *
 * A directory that doesn't exist is marked while it is being typed, but may be applied: its disk may not be there yet.
 * Apply makes directories absolute.
 *
 * Thread: main thread only.
 */
class TORVGeneralSettingsDialog final : public QDialog, public TORVToolDialogInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVGeneralSettingsDialog)

public:
    /// Of the window nothing is asked: everything here comes from the file.
    TORVGeneralSettingsDialog(QWidget* parent, TORVDialogParentInterface* window);
    ~TORVGeneralSettingsDialog() override;

    /// Of a window that was hidden all that wasn't applied is forgotten.
    void showDialog() override;
    void hideDialog() override;
    bool dialogVisible() const override;

    /// Loads the settings anew, unless the user has changed something and not applied it yet.
    void updateValues() override;

    void updateFromSettingsToUi();

    /// Loads the settings and then takes over what the controls show. A number that is as it was shown keeps the digits
    /// that no control shows.
    void updateFromUiToSettings();

    /// While data is being built nothing may be changed. Afterwards the focus is where it was before.
    void enableSettingControls(bool enabled);

Q_SIGNALS:
    /// New settings are in the file.
    void applyChanges();

    /// The user wants the stored terrain to go.
    void clearGeoCache();

public Q_SLOTS:
    void applyAction();
    void resetAction();
    void clearCacheAction();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private Q_SLOTS:
    void on_horizontalSlider_dataSmooth_valueChanged(int value);
    void on_data2DLocationSelectButton_clicked();
    void on_data3DLocationSelectButton_clicked();
    void on_geoLayerLocationSelectButton_clicked();

private:
    using DirectoryEdits = std::array<TORVDirectoryEdit*, 3>;

    void fillLists();
    void connectControls();
    void alignFields();
    void markEdited() { _isEdited = true; }
    DirectoryEdits directoryEdits() const;
    void takeDirectories();
    void directoryEdited(TORVDirectoryEdit& edit);
    void selectDirectory(TORVDirectoryEdit& edit, const QString& title);
    void showDirectoryError();
    void showDiskSpace(int percent);

    const std::unique_ptr<Ui::TORVGeneralSettingsDialog> _ui;
    TORVGeneralSettings _settings;
    QPointer<QWidget> _focusBeforeBusy;
    bool _isEdited = false; // by the user, and not applied
};
