// What is edited in the product information: the rows of surfaces and volume, and the colour scale.

#include "datalib/TORVDataFrame.h"
#include "gui/TORVColorStrip.h"
#include "gui/TORVDialogParentInterface.h"
#include "gui/TORVPalette.h"
#include "gui/TORVProductInformationDialog.h"
#include "utils/TORVDisplayMode.h"
#include "utils/TORVLog.h"

#include "ui_TORVProductInformationDialog.h"

#include <QGraphicsOpacityEffect>
#include <QSignalBlocker>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int FullOpacity = 100;
constexpr double SingleStep = 0.5;
constexpr double FineStep = 0.005;    // a type with a smaller step than this one gets another decimal
constexpr double EmptyAtNight = 0.12; // how much of an empty swatch is seen
constexpr int NumberOfDefaultScale = 1;
constexpr int ScaleNumberRole = Qt::UserRole + 1;

// The scales that the program comes with.
constexpr const char* ScaleNames[] = {QT_TRANSLATE_NOOP("TORVProductInformationDialog", "Default"),
                                      QT_TRANSLATE_NOOP("TORVProductInformationDialog", "Colour-safe")};

QString scaleText(const QString& name)
{
    for (const char* const known : ScaleNames) {
        if (name == QLatin1String(known)) {
            return TORVProductInformationDialog::tr(known);
        }
    }
    return name;
}

// To set a sheet is to lay out and polish anew, whether it differs or not.
void paint(QWidget* widget, const QString& sheet)
{
    if (widget->styleSheet() != sheet) {
        widget->setStyleSheet(sheet);
    }
}

} // namespace

void TORVProductInformationDialog::getGroupPointers(int group, QCheckBox*& check, QDoubleSpinBox*& value,
                                                    QDoubleSpinBox*& opacity, QPushButton*& color) const
{
    const Group rows[Groups] = {
        {_ui->surfaceCheckBox1, _ui->surfaceValueBox1, _ui->surfaceOpacityBox1, _ui->surfaceColorButton1},
        {_ui->surfaceCheckBox2, _ui->surfaceValueBox2, _ui->surfaceOpacityBox2, _ui->surfaceColorButton2},
        {_ui->surfaceCheckBox3, _ui->surfaceValueBox3, _ui->surfaceOpacityBox3, _ui->surfaceColorButton3},
        {_ui->surfaceCheckBox4, _ui->surfaceValueBox4, _ui->surfaceOpacityBox4, _ui->surfaceColorButton4},
        {nullptr, _ui->volumeValueBoxLow, _ui->volumeOpacityBoxLow, _ui->volumeColorButtonLow},
        {nullptr, _ui->volumeValueBoxHigh, _ui->volumeOpacityBoxHigh, _ui->volumeColorButtonHigh},
    };
    check = rows[group].check;
    value = rows[group].value;
    opacity = rows[group].opacity;
    color = rows[group].color;
}

TORVProductInformationDialog::Group TORVProductInformationDialog::groupOf(int group) const
{
    Group row;
    getGroupPointers(group, row.check, row.value, row.opacity, row.color);
    return row;
}

bool TORVProductInformationDialog::isRowOn(int group) const
{
    const QCheckBox* const check = groupOf(group).check;
    return !check || check->isChecked();
}

// The ends of the range are brought to what the box can show, without leaving the range.
void TORVProductInformationDialog::setRange(QDoubleSpinBox* box) const
{
    const bool isFine =
        _type &&
        _type->absoluteToDisplayValue(static_cast<unsigned int>(_type->getMinAbsValue()) + 1) - _minValue < FineStep;
    const int decimals = isFine ? 2 : 1;
    const double parts = std::pow(10.0, decimals);
    box->setDecimals(decimals);
    box->setRange(std::ceil(_minValue * parts) / parts, std::floor(_maxValue * parts) / parts);
    box->setSingleStep(SingleStep);
}

void TORVProductInformationDialog::spinBoxGroupEnable(int group)
{
    const Group row = groupOf(group);
    setRange(row.value);
    const bool isEnabled = _isIdle && isEditable();
    row.value->setEnabled(isEnabled);
    row.opacity->setEnabled(isEnabled);
    colorButtonEnable(row.color, numberOf(row.value));
}

void TORVProductInformationDialog::spinBoxGroupDisable(int group)
{
    const Group row = groupOf(group);
    row.value->setEnabled(false);
    row.opacity->setEnabled(false);
    colorButtonDisable(row.color);
}

void TORVProductInformationDialog::boxDisableEnable(int state, int group)
{
    if (state == Qt::Checked) {
        spinBoxGroupEnable(group);
    } else {
        spinBoxGroupDisable(group);
    }
    markTwins();
}

void TORVProductInformationDialog::colorButtonEnable(QPushButton* button, double value)
{
    if (!_colormap) {
        colorButtonDisable(button);
        return;
    }
    const auto [red, green, blue] = _colormap->getColor(value);
    paint(button, QStringLiteral("QPushButton { background-color: rgb(%1, %2, %3); }").arg(red).arg(green).arg(blue));
    button->setGraphicsEffect(nullptr);
}

void TORVProductInformationDialog::colorButtonDisable(QPushButton* button)
{
    paint(button, QStringLiteral("QPushButton { background-color: rgb(220,220,220); }"));
    if (!TORVDisplayMode::isNight()) {
        button->setGraphicsEffect(nullptr);
        return;
    }
    auto* const effect = new QGraphicsOpacityEffect(button);
    effect->setOpacity(EmptyAtNight);
    button->setGraphicsEffect(effect);
}

void TORVProductInformationDialog::updateRow(int group)
{
    const Group row = groupOf(group);
    if (isRowOn(group)) {
        colorButtonEnable(row.color, numberOf(row.value));
    } else {
        colorButtonDisable(row.color);
    }
    markTwins();
}

void TORVProductInformationDialog::updateColors()
{
    _colormap = _file ? makeColormap(scaleOfControls(), *_file) : nullptr;
    updateRows();
}

void TORVProductInformationDialog::updateRows()
{
    for (int group = 0; group < Groups; ++group) {
        updateRow(group);
    }
}

void TORVProductInformationDialog::renderColorBar()
{
    QLabel* const bar = _ui->colorBar;
    bar->setFixedHeight(TORVColorStrip::heightFor(bar->font()));
    const QColor text = TORVPalette::instance().color(QStringLiteral("muted"), TORVDisplayMode::isNight());
    bar->setPixmap(_colormap ? TORVColorStrip::draw(*_colormap, bar->width(), bar->font(), text, devicePixelRatioF())
                             : QPixmap());
}

bool TORVProductInformationDialog::isTwin(int group) const
{
    const double value = numberOf(groupOf(group).value);
    bool isFound = false;
    for (int earlier = 0; earlier < group; ++earlier) {
        isFound = isFound || (isRowOn(earlier) && numberOf(groupOf(earlier).value) == value);
    }
    return isFound && isRowOn(group);
}

void TORVProductInformationDialog::markTwins()
{
    const QColor color = TORVPalette::instance().color(QStringLiteral("err_text"), TORVDisplayMode::isNight());
    const QString marked = QStringLiteral("QDoubleSpinBox:enabled { color: %1; border-color: %1; }").arg(color.name());
    bool isAny = false;
    for (int group = 0; group < SurfaceGroups; ++group) {
        QDoubleSpinBox* const box = groupOf(group).value;
        const QString sheet = isTwin(group) ? marked : QString();
        isAny = isAny || !sheet.isEmpty();
        paint(box, sheet);
    }
    _ui->twinLabel->setVisible(isAny && _ui->renderCombo->currentIndex() != TORVProductSettings::VOLUME);
}

void TORVProductInformationDialog::put(QDoubleSpinBox* box, double number)
{
    const QSignalBlocker blocker(box);
    box->setValue(number);
    _numbers[box] = {number, box->value()};
}

// What nobody has touched is what it was, however the box has rounded it.
double TORVProductInformationDialog::numberOf(const QDoubleSpinBox* box) const
{
    const auto shown = _numbers.constFind(box);
    const bool isUntouched = shown != _numbers.constEnd() && shown->inBox == box->value();
    return isUntouched ? shown->exact : box->value();
}

void TORVProductInformationDialog::setProductSettings(const TORVProductSettings& settings)
{
    if (!_file) {
        return;
    }
    _shown = settings;
    {
        const QSignalBlocker blocker(_ui->renderCombo);
        _ui->renderCombo->setCurrentIndex(settings.getRenderingType());
    }
    selectScale(settings.getColorScaleName());
    _colormap = makeColormap(settings.getColorScaleName(), *_file);
    fillSurfaces(settings.getSurfaces());
    put(_ui->volumeValueBoxLow, settings.getVolumeValueLow());
    put(_ui->volumeOpacityBoxLow, settings.getVolumeOpacityLow());
    put(_ui->volumeValueBoxHigh, settings.getVolumeValueHigh());
    put(_ui->volumeOpacityBoxHigh, settings.getVolumeOpacityHigh());
    updateRows();
    renderColorBar();
    on_renderCombo_currentIndexChanged(_ui->renderCombo->currentIndex());
    updateEnabled();
}

void TORVProductInformationDialog::fillSurfaces(const QMap<double, int>& surfaces)
{
    if (surfaces.isEmpty()) {
        TORVLog::Instance()->logNotice(QStringLiteral("No surface pars defined!"));
    }
    double last = _minValue;
    auto surface = surfaces.cbegin();
    for (int group = 0; group < SurfaceGroups; ++group) {
        const bool isOn = surface != surfaces.cend();
        last = isOn ? surface.key() : nextSeam(last);
        fillSurfaceRow(group, last, isOn ? surface.value() : FullOpacity, isOn);
        if (isOn) {
            ++surface;
        }
    }
    _surplus.clear();
    for (; surface != surfaces.cend(); ++surface) {
        _surplus.insert(surface.key(), surface.value());
    }
    if (!_surplus.isEmpty()) {
        TORVLog::Instance()->logWarning(
            QStringLiteral("%1 surfaces are kept that the dialog has no rows for.").arg(_surplus.size()));
    }
}

void TORVProductInformationDialog::fillSurfaceRow(int group, double value, int opacity, bool isOn)
{
    const Group row = groupOf(group);
    const QSignalBlocker blocker(row.check);
    row.check->setChecked(isOn);
    put(row.value, value);
    put(row.opacity, opacity);
}

// What is offered for a row that isn't in use.
double TORVProductInformationDialog::nextSeam(double value) const
{
    const std::vector<double>& seams = _colormap->getSeams();
    const auto seam = std::upper_bound(seams.begin(), seams.end(), value);
    return std::min(seam == seams.end() ? value + SingleStep : *seam, _maxValue);
}

QMap<double, int> TORVProductInformationDialog::surfacesOfControls() const
{
    QMap<double, int> surfaces = _surplus;
    for (int group = 0; group < SurfaceGroups; ++group) {
        const Group row = groupOf(group);
        if (isRowOn(group) && !isTwin(group)) {
            surfaces.insert(numberOf(row.value), static_cast<int>(std::lround(numberOf(row.opacity))));
        }
    }
    return surfaces;
}

TORVProductSettings::Ptr TORVProductInformationDialog::getProductSettings() const
{
    auto settings = boost::make_shared<TORVProductSettings>(_shown);
    if (!_stored) {
        return settings;
    }
    settings->setRenderingType(static_cast<TORVProductSettings::RenderingType>(_ui->renderCombo->currentIndex()));
    settings->setColorScaleName(scaleOfControls());
    settings->setSurfaces(surfacesOfControls());
    settings->setVolumeValueLow(numberOf(_ui->volumeValueBoxLow));
    settings->setVolumeOpacityLow(numberOf(_ui->volumeOpacityBoxLow));
    settings->setVolumeValueHigh(numberOf(_ui->volumeValueBoxHigh));
    settings->setVolumeOpacityHigh(numberOf(_ui->volumeOpacityBoxHigh));
    return settings;
}

void TORVProductInformationDialog::fillScales()
{
    const QSignalBlocker blocker(_ui->colormapCombo);
    _ui->colormapCombo->clear();
    const int code = TORVColormap::codeOf(*_type, _file->getRawType());
    for (const TORVColormap::ColorScaleListItem& scale : TORVColormap::getScalesForDataType(code)) {
        _ui->colormapCombo->addItem(scaleText(scale.name), scale.name);
        _ui->colormapCombo->setItemData(_ui->colormapCombo->count() - 1, scale.number, ScaleNumberRole);
    }
    _areScalesFixed = _ui->colormapCombo->count() == 0;
    if (_areScalesFixed) {
        _ui->colormapCombo->addItem(tr("Fixed"));
    }
}

// A name that the list lacks is drawn in the scale of the first number, and stays in the record until another is
// chosen.
void TORVProductInformationDialog::selectScale(const QString& name)
{
    QComboBox* const combo = _ui->colormapCombo;
    const QSignalBlocker blocker(combo);
    const int named = combo->findData(name);
    const int byDefault = _areScalesFixed ? 0 : combo->findData(NumberOfDefaultScale, ScaleNumberRole);
    combo->setCurrentIndex(named < 0 ? byDefault : named);
    _scaleName = name;
    _scaleIndex = combo->currentIndex();
}

QString TORVProductInformationDialog::scaleOfControls() const
{
    const QComboBox* const combo = _ui->colormapCombo;
    return combo->currentIndex() == _scaleIndex ? _scaleName : combo->currentData().toString();
}

TORVColormap::CPtr TORVProductInformationDialog::makeColormap(const QString& name, const TORVFile& file) const
{
    return boost::make_shared<TORVColormap>(name, file.getDataType(), TORVColormap::DISPLAY_VALUES, file.getRawType());
}

TORVColormap::CPtr TORVProductInformationDialog::getColormap() const
{
    const TORVDataFrame::CPtr frame = _window->getCurrentDataFrame();
    const TORVFileLeaf::Ptr leaf = frame ? frame->getData3d() : nullptr;
    if (!leaf || !leaf->isValid() || !frame->getProductSettings()) {
        return nullptr;
    }
    const TORVFile::CPtr file = leaf->getFile();
    const QString scale = frame->getProductSettings()->getColorScaleName();
    const TORVDataType type = file->getDataType();
    const bool isKnown =
        _colormapInUse && _scaleInUse == scale && *_typeInUse == type && _codeInUse == file->getRawType();
    if (!isKnown) {
        _colormapInUse = makeColormap(scale, *file);
        _scaleInUse = scale;
        _typeInUse = type;
        _codeInUse = file->getRawType();
    }
    return _colormapInUse;
}

void TORVProductInformationDialog::on_renderCombo_currentIndexChanged(int index)
{
    const bool isVolume = index == TORVProductSettings::VOLUME;
    for (int group = 0; group < Groups; ++group) {
        const Group row = groupOf(group);
        const bool isShown = (group >= SurfaceGroups) == isVolume;
        const QList<QWidget*> widgets = {row.check, row.value, row.opacity, row.color};
        for (QWidget* const widget : widgets) {
            if (widget) {
                widget->setVisible(isShown);
            }
        }
    }
    _ui->volumeLabelLow->setVisible(isVolume);
    _ui->volumeLabelHigh->setVisible(isVolume);
    _ui->valueLabel->setBuddy(groupOf(isVolume ? LowGroup : 0).value);
    _ui->opacityLabel->setBuddy(groupOf(isVolume ? LowGroup : 0).opacity);
    markTwins();
}

void TORVProductInformationDialog::on_colormapCombo_currentIndexChanged(int)
{
    updateColors();
    renderColorBar();
}
