#include "gui/TORVProductInformationDialog.h"

#include "datalib/TORVDataFrame.h"
#include "gui/TORVDialogParentInterface.h"
#include "gui/TORVProductDetails.h"
#include "gui/TORVWheelGuard.h"
#include "settings/TORVConfig.h"
#include "settings/TORVGeneralSettings.h"
#include "utils/TORVLog.h"
#include "utils/TORVSettingsReader.h"

#include "ui_TORVProductInformationDialog.h"

#include <QCloseEvent>
#include <QMessageBox>
#include <QSettings>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyledItemDelegate>

#include <boost/make_shared.hpp>

#include <cassert>
#include <iterator>

namespace
{

constexpr int MaxNameWidth = 36; // characters of middling width

// Sheets that look at a property are read again only when they are told to.
void setTextRole(QLabel* label, const char* role)
{
    const QString text = QString::fromLatin1(role);
    if (label->property("textRole").toString() == text) {
        return;
    }
    label->setProperty("textRole", text);
    label->style()->unpolish(label);
    label->style()->polish(label);
}

} // namespace

TORVProductInformationDialog::TORVProductInformationDialog(QWidget* parent, TORVDialogParentInterface* window)
    : QDialog(parent), _ui(std::make_unique<Ui::TORVProductInformationDialog>()), _window(window)
{
    _ui->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    for (QComboBox* const combo : {_ui->renderCombo, _ui->colormapCombo}) {
        combo->setItemDelegate(new QStyledItemDelegate(combo));
    }
    setUpRows();
    TORVWheelGuard::guard(this);
    on_expandButton_toggled(_ui->expandButton->isChecked());
    showNothing();
}

TORVProductInformationDialog::~TORVProductInformationDialog() = default;

// The rows of either rendering keep the room of the other, so that nothing moves when it is changed.
void TORVProductInformationDialog::setUpRows()
{
    const auto keepRoom = [](QWidget* widget) {
        QSizePolicy policy = widget->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        widget->setSizePolicy(policy);
    };
    for (int group = 0; group < Groups; ++group) {
        const Group row = groupOf(group);
        const QList<QWidget*> widgets = {row.check, row.value, row.opacity, row.color};
        for (QWidget* const widget : widgets) {
            if (widget) {
                keepRoom(widget);
            }
        }
    }
    keepRoom(_ui->volumeLabelLow);
    keepRoom(_ui->volumeLabelHigh);
    keepRoom(_ui->twinLabel);
    on_renderCombo_currentIndexChanged(_ui->renderCombo->currentIndex());
}

void TORVProductInformationDialog::showDialog()
{
    restorePosition();
    show();
    raise();
}

void TORVProductInformationDialog::hideDialog()
{
    storePosition();
    hide();
}

void TORVProductInformationDialog::updateValues()
{
    const TORVDataFrame::CPtr frame = _window->getCurrentDataFrame();
    const TORVFileLeaf::Ptr leaf = frame ? frame->getData3d() : nullptr;
    if (!leaf || !leaf->isValid() || !frame->getProductSettings()) {
        showNothing();
        return;
    }
    _file = leaf->getFile();
    updateDialog();
    updateSettings(*frame->getProductSettings());
}

void TORVProductInformationDialog::updateDialog()
{
    assert(_file && _file->isValid());
    const TORVGeneralSettings& settings = *_window->getCurrentGeneralSettings();
    showHeadline(TORVProductDetails::quantity(*_file), TORVProductDetails::product(*_file, settings));
    showDetails(TORVProductDetails::of(*_file, settings));
    const QFontMetrics metrics(_ui->label_file->font());
    const int mostWidth = MaxNameWidth * metrics.averageCharWidth();
    _ui->label_file->setText(metrics.elidedText(_file->getName(), Qt::ElideMiddle, mostWidth));
    _ui->label_file->setToolTip(QStringLiteral("<span>%1</span>").arg(_file->getPath().toHtmlEscaped()));
}

void TORVProductInformationDialog::showHeadline(const QString& quantity, const QString& product)
{
    const QString missing = tr("Not available");
    _ui->label_headline->setText(quantity.isEmpty() ? missing : quantity);
    _ui->label_product->setText(product.isEmpty() ? missing : product);
}

void TORVProductInformationDialog::showDetails(const QStringList& texts)
{
    QLabel* const labels[] = {_ui->label_location, _ui->label_siteHeight, _ui->label_grid,  _ui->label_gridStep,
                              _ui->label_extent,   _ui->label_projection, _ui->label_earth, _ui->label_nyquist,
                              _ui->label_range,    _ui->label_size,       _ui->label_file};
    static_assert(std::size(labels) == TORVProductDetails::DETAIL_COUNT);
    for (int detail = 0; detail < TORVProductDetails::DETAIL_COUNT; ++detail) {
        QLabel* const label = labels[detail];
        const QString text = texts.value(detail);
        label->setText(text.isEmpty() ? tr("Not available") : text);
        setTextRole(label, text.isEmpty() ? "missing" : "value");
    }
}

void TORVProductInformationDialog::updateSettings(const TORVProductSettings& settings)
{
    const auto record = boost::make_shared<TORVProductSettings>(settings);
    const bool isNews = !_stored || _stored->getProduct() != record->getProduct() ||
                        _stored->getConfiguration() != record->getConfiguration() ||
                        _stored->hasChanged(record, nullptr);
    const TORVDataType type = _file->getDataType();
    const bool isOtherType = !_type || *_type != type;
    if (isOtherType) {
        takeType(type);
    }
    if (isNews) {
        _stored = record;
        setProductSettings(settings);
    } else if (isOtherType) {
        updateColors();
        renderColorBar();
    }
    updateEnabled();
}

// What stands in the boxes stays, as far as the type's range allows.
void TORVProductInformationDialog::takeType(const TORVDataType& type)
{
    const QString scale = scaleOfControls();
    _type = type;
    _minValue = type.getMinDisplayValue();
    _maxValue = type.getMaxDisplayValue();
    for (int group = 0; group < Groups; ++group) {
        QDoubleSpinBox* const box = groupOf(group).value;
        const double number = numberOf(box);
        setRange(box);
        put(box, number);
    }
    const QString unit = type.getRawType() == TORVColormap::None ? QString() : type.getQuantityUnit();
    _ui->valueLabel->setText(unit.isEmpty() ? tr("&Value") : tr("&Value, %1").arg(unit));
    fillScales();
    selectScale(scale);
}

void TORVProductInformationDialog::showNothing()
{
    _file.reset();
    _type.reset();
    _stored.reset();
    _shown = TORVProductSettings();
    _surplus.clear();
    _colormap.reset();
    showHeadline({}, {});
    showDetails({});
    _ui->valueLabel->setText(tr("&Value"));
    for (int group = 0; group < SurfaceGroups; ++group) {
        QCheckBox* const check = groupOf(group).check;
        const QSignalBlocker blocker(check);
        check->setChecked(false);
    }
    const QSignalBlocker blocker(_ui->colormapCombo);
    _ui->colormapCombo->clear();
    selectScale({});
    updateEnabled();
    updateRows();
    renderColorBar();
}

bool TORVProductInformationDialog::isEditable() const
{
    return _stored && _type && _type->getRawType() != TORVColormap::None;
}

bool TORVProductInformationDialog::isModified() const
{
    return _stored && _stored->hasChanged(getProductSettings(), nullptr);
}

void TORVProductInformationDialog::enableProdSettings(bool isIdle)
{
    _isIdle = isIdle;
    updateEnabled();
}

// Who was typing goes on typing when the window is idle again; until then no key goes to where Qt would lead it.
void TORVProductInformationDialog::updateEnabled()
{
    const bool isEnabled = _isIdle && isEditable();
    QWidget* const focus = focusWidget();
    if (!isEnabled && focus && focus != _ui->expandButton) {
        _focusBeforeBusy = focus;
        focus->clearFocus();
    }
    const QList<QWidget*> widgets = {_ui->renderCombo, _ui->resetButton, _ui->cancelButton, _ui->saveButton,
                                     _ui->applyButton};
    for (QWidget* const widget : widgets) {
        widget->setEnabled(isEnabled);
    }
    _ui->colormapCombo->setEnabled(isEnabled && !_areScalesFixed);
    for (int group = 0; group < Groups; ++group) {
        const Group row = groupOf(group);
        if (row.check) {
            row.check->setEnabled(isEnabled);
        }
        row.value->setEnabled(isEnabled && isRowOn(group));
        row.opacity->setEnabled(isEnabled && isRowOn(group));
    }
    if (isEnabled && _focusBeforeBusy) {
        if (!focusWidget()) {
            _focusBeforeBusy->setFocus();
        }
        _focusBeforeBusy.clear();
    }
}

void TORVProductInformationDialog::saveConfiguration()
{
    if (!isEditable()) {
        return;
    }
    const TORVProductSettings::CPtr settings = getProductSettings();
    if (settings->getRenderingType() == TORVProductSettings::SURFACE && settings->getSurfaces().isEmpty()) {
        TORVLog::Instance()->logNotice(QStringLiteral("No surfaces defined -> Reset."));
        resetConfiguration();
    }
    const TORVProductSettings::CPtr record = getProductSettings();
    record->save();
    setProductSettings(*record);
    applyAction();
}

void TORVProductInformationDialog::resetConfiguration()
{
    if (!isEditable()) {
        return;
    }
    TORVProductSettings defaults = _shown;
    defaults.reset(&*_type);
    setProductSettings(defaults);
}

void TORVProductInformationDialog::cancelConfiguration()
{
    if (_stored) {
        const TORVProductSettings::CPtr stored = _stored;
        setProductSettings(*stored);
    }
}

// The record counts as in use from now on: what is edited while the picture is drawn isn't taken for a difference to
// the record that then comes back.
void TORVProductInformationDialog::applyAction()
{
    if (!isEditable()) {
        return;
    }
    _stored = getProductSettings();
    Q_EMIT applyChanges();
}

void TORVProductInformationDialog::storePosition()
{
    if (!_wasShown) {
        return;
    }
    const QByteArray position = saveGeometry();
    const bool isExpanded = _ui->expandButton->isChecked();
    QSettings& settings = *TORVConfig::instance()->get();
    settings.beginGroup(TORVConfig::DIALOG_GROUP);
    settings.setValue(TORVConfig::DIALOG_PRODUCTINFO_POS, position);
    settings.setValue(TORVConfig::DIALOG_PRODUCTINFO_EXPANDED, isExpanded);
    settings.endGroup();
    TORVConfig::instance()->release();
}

void TORVProductInformationDialog::restorePosition()
{
    QSettings& settings = *TORVConfig::instance()->get();
    settings.beginGroup(TORVConfig::DIALOG_GROUP);
    const QByteArray position = settings.value(TORVConfig::DIALOG_PRODUCTINFO_POS).toByteArray();
    const bool isExpanded = TORVSettingsReader::flag(settings.value(TORVConfig::DIALOG_PRODUCTINFO_EXPANDED),
                                                     _ui->expandButton->isChecked());
    settings.endGroup();
    TORVConfig::instance()->release();
    if (!position.isEmpty()) {
        restoreGeometry(position);
    }
    _ui->expandButton->setChecked(isExpanded);
}

void TORVProductInformationDialog::reject()
{
    if (isModified()) {
        cancelConfiguration();
        return;
    }
    QDialog::reject();
}

void TORVProductInformationDialog::askToSave()
{
    QMessageBox box(QMessageBox::Question, windowTitle(), tr("Rendering parameters has been modified but not saved"),
                    QMessageBox::Yes | QMessageBox::No, this);
    box.setInformativeText(tr("Do you want to save your changes?"));
    box.setDefaultButton(QMessageBox::Yes);
    if (box.exec() == QMessageBox::Yes) {
        saveConfiguration();
    }
}

void TORVProductInformationDialog::closeEvent(QCloseEvent* event)
{
    if (isModified()) {
        askToSave();
    }
    cancelConfiguration();
    QDialog::reject();
    event->accept();
}

void TORVProductInformationDialog::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::StyleChange) {
        updateRows();
        renderColorBar();
    }
}

void TORVProductInformationDialog::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    renderColorBar();
}

void TORVProductInformationDialog::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    _wasShown = true;
    renderColorBar();
}

void TORVProductInformationDialog::on_expandButton_toggled(bool isExpanded)
{
    _ui->detailsPanel->setVisible(isExpanded);
}
