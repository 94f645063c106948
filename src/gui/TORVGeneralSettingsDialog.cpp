#include "gui/TORVGeneralSettingsDialog.h"

#include "gui/TORVDirectoryEdit.h"
#include "gui/TORVWheelGuard.h"
#include "ui_TORVGeneralSettingsDialog.h"

#include <QFileDialog>
#include <QStyledItemDelegate>

#include <algorithm>

namespace
{

constexpr int SmoothStepsPerUnit = 10;
constexpr int DiskCheckPeriod_s = 60;
constexpr int LabelWidth_px = 128;

int smoothStep(double smooth)
{
    return qRound(smooth * SmoothStepsPerUnit);
}

QString startDirectory(const TORVDirectoryEdit& edit)
{
    return edit.isInvalid() || edit.absolutePath().isEmpty() ? QDir::homePath() : edit.absolutePath();
}

} // namespace

TORVGeneralSettingsDialog::TORVGeneralSettingsDialog(QWidget* parent, TORVDialogParentInterface*)
    : QDialog(parent), _ui(std::make_unique<Ui::TORVGeneralSettingsDialog>())
{
    _ui->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    fillLists();
    updateFromSettingsToUi();
    showDirectoryError();
    connectControls();
    TORVWheelGuard::guard(this);
}

// Controls that lose the focus because they go still tell what they were about to, to what is left of the window.
TORVGeneralSettingsDialog::~TORVGeneralSettingsDialog()
{
    const QList<QWidget*> controls = findChildren<QWidget*>();
    for (const QWidget* const control : controls) {
        control->disconnect(this);
    }
}

void TORVGeneralSettingsDialog::fillLists()
{
    _ui->comboBox_latLonUnit->addItems({
        tr("Decimal degrees") + QStringLiteral(" (dd.dddd\u00B0)"),
        tr("Degrees, decimal minutes") + QStringLiteral(" (DD\u00B0 mm.mmm')"),
        tr("Degrees, minutes, decimal seconds") + QStringLiteral(" (DD\u00B0 MM' ss.s\")"),
    });
    for (QComboBox* const combo : {_ui->comboBox_dataShrinkH, _ui->comboBox_dataShrinkV}) {
        combo->addItems({tr("Full"), tr("Half"), tr("1/3x"), tr("1/4x")}); // of every so-maniest point
    }
    const QList<QComboBox*> combos = findChildren<QComboBox*>();
    for (QComboBox* const combo : combos) {
        combo->setItemDelegate(new QStyledItemDelegate(combo));
    }
}

// Fields begin at one line in all groups, and nothing moves with the length of a number.
void TORVGeneralSettingsDialog::alignFields()
{
    int width = LabelWidth_px;
    const std::array<QGridLayout*, 3> grids = {_ui->unitsLayout, _ui->sceneLayout, _ui->locationsLayout};
    for (const QGridLayout* const grid : grids) {
        for (int row = 0; row < grid->rowCount(); ++row) {
            const QLayoutItem* const item = grid->itemAtPosition(row, 0);
            width = item ? std::max(width, item->sizeHint().width()) : width;
        }
    }
    for (QGridLayout* const grid : grids) {
        grid->setColumnMinimumWidth(0, width);
    }
    QLabel& value = *_ui->label_dataSmoothValue;
    value.setMinimumWidth(value.fontMetrics().horizontalAdvance(QStringLiteral("10.0")));
}

void TORVGeneralSettingsDialog::connectControls()
{
    using Self = TORVGeneralSettingsDialog;
    connect(_ui->applyButton, &QPushButton::clicked, this, &Self::applyAction);
    connect(_ui->resetButton, &QPushButton::clicked, this, &Self::resetAction);
    connect(_ui->clearCacheButton, &QPushButton::clicked, this, &Self::clearCacheAction);
    connect(_ui->diskSpaceBar, &TORVDiskSpaceIndicator::percentChanged, this, &Self::showDiskSpace);
    const QList<QRadioButton*> buttons = findChildren<QRadioButton*>();
    for (const QRadioButton* const button : buttons) {
        connect(button, &QRadioButton::toggled, this, &Self::markEdited);
    }
    const QList<QComboBox*> combos = findChildren<QComboBox*>();
    for (const QComboBox* const combo : combos) {
        connect(combo, qOverload<int>(&QComboBox::currentIndexChanged), this, &Self::markEdited);
    }
    connect(_ui->doubleSpinBox_verticalScale, &QDoubleSpinBox::textChanged, this, &Self::markEdited);
    connect(_ui->horizontalSlider_dataSmooth, &QSlider::valueChanged, this, &Self::markEdited);
    for (TORVDirectoryEdit* const edit : directoryEdits()) {
        connect(edit, &QLineEdit::textChanged, this, &Self::markEdited);
        connect(edit, &QLineEdit::editingFinished, this, [this, edit] { directoryEdited(*edit); });
        connect(edit, &TORVDirectoryEdit::checked, this, &Self::showDirectoryError);
    }
}

TORVGeneralSettingsDialog::DirectoryEdits TORVGeneralSettingsDialog::directoryEdits() const
{
    return {_ui->geoLayerLocationEdit, _ui->data3DLocationEdit, _ui->data2DLocationEdit};
}

void TORVGeneralSettingsDialog::showDialog()
{
    _isEdited = _isEdited && isVisible();
    updateValues();
    if (!isVisible()) {
        (_settings.is24hClock() ? _ui->radioButton_24hClock : _ui->radioButton_12hClock)->setFocus();
    }
    show();
    raise();
    activateWindow();
}

void TORVGeneralSettingsDialog::hideDialog()
{
    hide();
}

bool TORVGeneralSettingsDialog::dialogVisible() const
{
    return isVisible();
}

void TORVGeneralSettingsDialog::updateValues()
{
    if (!_isEdited) {
        _settings.load();
        updateFromSettingsToUi();
    }
}

void TORVGeneralSettingsDialog::updateFromSettingsToUi()
{
    (_settings.is24hClock() ? _ui->radioButton_24hClock : _ui->radioButton_12hClock)->setChecked(true);
    (_settings.isMetricUnits() ? _ui->radioButton_metric : _ui->radioButton_english)->setChecked(true);
    _ui->comboBox_latLonUnit->setCurrentIndex(_settings.getLatLonFormat());
    _ui->doubleSpinBox_verticalScale->setValue(_settings.getVerticalScale());
    _ui->comboBox_dataShrinkH->setCurrentIndex(_settings.getDataShrinkH() - 1);
    _ui->comboBox_dataShrinkV->setCurrentIndex(_settings.getDataShrinkV() - 1);
    _ui->horizontalSlider_dataSmooth->setValue(smoothStep(_settings.getDataSmooth()));
    on_horizontalSlider_dataSmooth_valueChanged(_ui->horizontalSlider_dataSmooth->value());
    _ui->geoLayerLocationEdit->setText(_settings.getGeoDir());
    _ui->data3DLocationEdit->setText(_settings.get3DDir());
    _ui->data2DLocationEdit->setText(_settings.get2DDir());
    _isEdited = false;
}

void TORVGeneralSettingsDialog::updateFromUiToSettings()
{
    _settings.load();
    _settings.set24hClock(_ui->radioButton_24hClock->isChecked());
    _settings.setMetricUnits(_ui->radioButton_metric->isChecked());
    _settings.setLatLonFormat(static_cast<TORVGeneralSettings::LatLonFormat>(_ui->comboBox_latLonUnit->currentIndex()));
    const QDoubleSpinBox& scale = *_ui->doubleSpinBox_verticalScale;
    if (scale.textFromValue(scale.value()) != scale.textFromValue(_settings.getVerticalScale())) {
        _settings.setVerticalScale(scale.value());
    }
    _settings.setDataShrinkH(_ui->comboBox_dataShrinkH->currentIndex() + 1);
    _settings.setDataShrinkV(_ui->comboBox_dataShrinkV->currentIndex() + 1);
    const int smooth = _ui->horizontalSlider_dataSmooth->value();
    if (smooth != smoothStep(_settings.getDataSmooth())) {
        _settings.setDataSmooth(static_cast<double>(smooth) / SmoothStepsPerUnit);
    }
    takeDirectories();
}

void TORVGeneralSettingsDialog::takeDirectories()
{
    _settings.setGeoDir(_ui->geoLayerLocationEdit->absolutePath());
    _settings.set3DDir(_ui->data3DLocationEdit->absolutePath());
    _settings.set2DDir(_ui->data2DLocationEdit->absolutePath());
}

void TORVGeneralSettingsDialog::applyAction()
{
    updateFromUiToSettings();
    _settings.save();
    updateFromSettingsToUi();
    Q_EMIT applyChanges();
}

void TORVGeneralSettingsDialog::resetAction()
{
    takeDirectories(); // they stay as they have been typed
    _settings.reset(true);
    updateFromSettingsToUi();
    markEdited();
}

void TORVGeneralSettingsDialog::clearCacheAction()
{
    Q_EMIT clearGeoCache();
}

void TORVGeneralSettingsDialog::on_horizontalSlider_dataSmooth_valueChanged(int value)
{
    const double smooth = static_cast<double>(value) / SmoothStepsPerUnit;
    _ui->label_dataSmoothValue->setText(QString::number(smooth, 'f', 1));
}

void TORVGeneralSettingsDialog::on_data2DLocationSelectButton_clicked()
{
    selectDirectory(*_ui->data2DLocationEdit, tr("Select the 2D data directory"));
}

void TORVGeneralSettingsDialog::on_data3DLocationSelectButton_clicked()
{
    selectDirectory(*_ui->data3DLocationEdit, tr("Select the 3D data directory"));
}

void TORVGeneralSettingsDialog::on_geoLayerLocationSelectButton_clicked()
{
    selectDirectory(*_ui->geoLayerLocationEdit, tr("Select the elevation data directory"));
}

void TORVGeneralSettingsDialog::selectDirectory(TORVDirectoryEdit& edit, const QString& title)
{
    auto* const chooser = new QFileDialog(this, title, startDirectory(edit));
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::Directory);
    chooser->setOptions(QFileDialog::ShowDirsOnly | QFileDialog::DontUseNativeDialog);
    connect(chooser, &QFileDialog::fileSelected, &edit, [this, &edit](const QString& directory) {
        edit.setText(directory);
        edit.setModified(true);
        directoryEdited(edit);
    });
    chooser->open();
}

// Leaving an edit as it was says nothing about which disk is meant.
void TORVGeneralSettingsDialog::directoryEdited(TORVDirectoryEdit& edit)
{
    if (edit.isModified()) {
        edit.setModified(false);
        _ui->diskSpaceBar->pathChanged(edit.absolutePath());
    }
}

void TORVGeneralSettingsDialog::showDirectoryError()
{
    const DirectoryEdits edits = directoryEdits();
    const auto* const wrong =
        std::find_if(edits.begin(), edits.end(), [](const TORVDirectoryEdit* edit) { return edit->isInvalid(); });
    const QString text = wrong == edits.end() ? QStringLiteral(" ") : (*wrong)->errorText(); // the line keeps its place
    QLabel& label = *_ui->label_directoryError;
    label.setText(label.fontMetrics().elidedText(text, Qt::ElideMiddle, label.width()));
    label.setToolTip(text.trimmed());
}

void TORVGeneralSettingsDialog::showDiskSpace(int percent)
{
    _ui->label_diskSpaceValue->setText(percent < 0 ? tr("Not available")
                                                   : tr("%1% (%2)").arg(percent).arg(_ui->diskSpaceBar->sizesText()));
    _ui->label_diskSpaceValue->setToolTip(_ui->diskSpaceBar->path());
}

void TORVGeneralSettingsDialog::enableSettingControls(bool enabled)
{
    if (!enabled && !_focusBeforeBusy) {
        _focusBeforeBusy = focusWidget();
    }
    const std::array<QWidget*, 6> controls = {_ui->groupBox_units, _ui->groupBox_scene,   _ui->groupBox_locations,
                                              _ui->resetButton,    _ui->clearCacheButton, _ui->applyButton};
    for (QWidget* const control : controls) {
        control->setEnabled(enabled);
    }
    if (enabled && _focusBeforeBusy) {
        _focusBeforeBusy->setFocus();
        _focusBeforeBusy = nullptr;
    }
}

void TORVGeneralSettingsDialog::showEvent(QShowEvent* event)
{
    alignFields(); // the style that tells the font is known by now
    QDialog::showEvent(event);
    for (TORVDirectoryEdit* const edit : directoryEdits()) {
        edit->checkDirectory();
    }
    _ui->diskSpaceBar->pathChanged(_settings.get3DDir());
    _ui->diskSpaceBar->startPolling(DiskCheckPeriod_s);
}

void TORVGeneralSettingsDialog::hideEvent(QHideEvent* event)
{
    _ui->diskSpaceBar->stopPolling();
    QDialog::hideEvent(event);
}
