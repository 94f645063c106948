#pragma once

#include "datalib/TORVDataType.h"
#include "datalib/TORVFile.h"
#include "gui/TORVToolDialogInterface.h"
#include "settings/TORVProductSettings.h"
#include "visualization/TORVColormap.h"

#include <QDialog>
#include <QHash>
#include <QPointer>

#include <memory>
#include <optional>

class QCheckBox;
class QDoubleSpinBox;
class QLabel;
class QPushButton;
class TORVDialogParentInterface;
namespace Ui
{
class TORVProductInformationDialog;
}

/**
 * What is known of the product on show, and how it is drawn: as a volume or as up to four surfaces, and in which colour
 * scale. Stays open beside the scene.
 *
 * The controls show a record of settings and are edited freely; the record that they were filled from is carried along,
 * so that what nobody touched keeps its exact value, surfaces beyond the fourth included. Nothing happens to the
 * picture until `applyChanges` is emitted. Its receiver takes `getProductSettings`, compares it with the record in use,
 * saves it and draws; "Save" saves by itself before, so that a record is kept which draws no differently.
 *
 * Values are in the unit of the product's data type, opacities in percent.
 *
 * Thread: main thread only.
 * Ownership: the window is not its own and outlives it.
 */
class TORVProductInformationDialog final : public QDialog, public TORVToolDialogInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVProductInformationDialog)

public:
    TORVProductInformationDialog(QWidget* parent, TORVDialogParentInterface* window);
    ~TORVProductInformationDialog() override;

    void showDialog() override;
    void hideDialog() override;
    bool dialogVisible() const override { return isVisible(); }

    /**
     * Looks at the product on show anew. What is told of it is always refreshed; what the user may be editing only
     * where it is another product's, where its record was changed elsewhere, or where nothing was edited.
     */
    void updateValues() override;

    /// What is told of the product. There must be one.
    void updateDialog();

    /// Shows a record in the controls; what they are compared with stays.
    void setProductSettings(const TORVProductSettings& settings);

    /// A new record from the controls; never null. An empty one where there is no product.
    TORVProductSettings::Ptr getProductSettings() const;

    /**
     * The colours that the product on show is drawn in, by its display values: as the record in use names them, not as
     * they stand in the controls. Asks the window for its frame, so it is right though this was never shown or updated.
     * @return null without a product
     */
    TORVColormap::CPtr getColormap() const;

    /// Whether the window is idle. What can be edited is enabled while it is and while there is something to edit.
    void enableProdSettings(bool isIdle);

    /// Saves the controls' record, shows it and has it applied. No surface at all becomes the defaults.
    void saveConfiguration();

    /// Shows the defaults of the data type.
    void resetConfiguration();

    /// Shows the record again that the product is drawn by.
    void cancelConfiguration();

    /// Asks for the controls' record to be applied.
    void applyAction();

    void storePosition();
    void restorePosition();

public Q_SLOTS:
    /// Takes back what was edited, else hides.
    void reject() override;

Q_SIGNALS:
    // Emitted on the main thread.
    void applyChanges();

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private Q_SLOTS:
    void on_renderCombo_currentIndexChanged(int index);
    void on_colormapCombo_currentIndexChanged(int index);
    void on_surfaceCheckBox1_stateChanged(int state) { boxDisableEnable(state, 0); }
    void on_surfaceCheckBox2_stateChanged(int state) { boxDisableEnable(state, 1); }
    void on_surfaceCheckBox3_stateChanged(int state) { boxDisableEnable(state, 2); }
    void on_surfaceCheckBox4_stateChanged(int state) { boxDisableEnable(state, 3); }
    void on_surfaceValueBox1_valueChanged(double) { updateRow(0); }
    void on_surfaceValueBox2_valueChanged(double) { updateRow(1); }
    void on_surfaceValueBox3_valueChanged(double) { updateRow(2); }
    void on_surfaceValueBox4_valueChanged(double) { updateRow(3); }
    void on_volumeValueBoxLow_valueChanged(double) { updateRow(LowGroup); }
    void on_volumeValueBoxHigh_valueChanged(double) { updateRow(HighGroup); }
    void on_resetButton_clicked() { resetConfiguration(); }
    void on_cancelButton_clicked() { cancelConfiguration(); }
    void on_saveButton_clicked() { saveConfiguration(); }
    void on_applyButton_clicked() { applyAction(); }
    void on_expandButton_toggled(bool isExpanded);

private:
    static constexpr int SurfaceGroups = 4;
    static constexpr int LowGroup = SurfaceGroups;
    static constexpr int HighGroup = SurfaceGroups + 1;
    static constexpr int Groups = SurfaceGroups + 2;

    // The number of a record and what became of it in the box: rounded, and brought into the range.
    struct Shown
    {
        double exact = 0.0;
        double inBox = 0.0;
    };

    struct Group
    {
        QCheckBox* check = nullptr; // none in the rows of the volume
        QDoubleSpinBox* value = nullptr;
        QDoubleSpinBox* opacity = nullptr;
        QPushButton* color = nullptr;
    };

    void setUpRows();
    void getGroupPointers(int group, QCheckBox*& check, QDoubleSpinBox*& value, QDoubleSpinBox*& opacity,
                          QPushButton*& color) const;
    Group groupOf(int group) const;
    void spinBoxGroupEnable(int group);
    void spinBoxGroupDisable(int group);
    void boxDisableEnable(int state, int group);
    void colorButtonEnable(QPushButton* button, double value);
    void colorButtonDisable(QPushButton* button);
    bool isRowOn(int group) const;
    void updateRow(int group);
    void updateRows();
    void updateColors();
    void renderColorBar();
    void markTwins();
    bool isTwin(int group) const;

    void setRange(QDoubleSpinBox* box) const;
    void put(QDoubleSpinBox* box, double number);
    double numberOf(const QDoubleSpinBox* box) const;
    void fillSurfaces(const QMap<double, int>& surfaces);
    void fillSurfaceRow(int group, double value, int opacity, bool isOn);
    double nextSeam(double value) const;
    QMap<double, int> surfacesOfControls() const;
    void fillScales();
    void selectScale(const QString& name);
    QString scaleOfControls() const;
    TORVColormap::CPtr makeColormap(const QString& name, const TORVFile& file) const;

    void updateSettings(const TORVProductSettings& settings);
    void takeType(const TORVDataType& type);
    void showNothing();
    void showHeadline(const QString& quantity, const QString& product);
    void showDetails(const QStringList& texts);
    bool isEditable() const;
    bool isModified() const;
    void updateEnabled();
    void askToSave();

    std::unique_ptr<Ui::TORVProductInformationDialog> _ui;
    TORVDialogParentInterface* _window;
    TORVFile::CPtr _file;              // null: no product
    std::optional<TORVDataType> _type; // what the controls are made for
    double _minValue = 0.0;            // display values
    double _maxValue = 0.0;
    TORVProductSettings::CPtr _stored; // what the product is drawn by; null: no product
    TORVProductSettings _shown;        // what the controls were last filled from
    QString _scaleName;                // what the item of _scaleIndex stands for, whatever it is called
    int _scaleIndex = -1;
    bool _areScalesFixed = true; // there are none to choose from
    QMap<double, int> _surplus;  // surfaces that there are no rows for
    QHash<const QDoubleSpinBox*, Shown> _numbers;
    TORVColormap::CPtr _colormap; // as the controls say; null: no product
    QPointer<QWidget> _focusBeforeBusy;
    bool _isIdle = true;
    bool _wasShown = false;

    // What getColormap answered last, and to which question.
    mutable TORVColormap::CPtr _colormapInUse;
    mutable QString _scaleInUse;
    mutable std::optional<TORVDataType> _typeInUse;
    mutable int _codeInUse = TORVColormap::None;
};
