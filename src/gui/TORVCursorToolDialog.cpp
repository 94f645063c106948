#include "gui/TORVCursorToolDialog.h"

#include "datalib/TORVDataFrame.h"
#include "datalib/TORVTerrainSet.h"
#include "gui/TORVCursorText.h"
#include "gui/TORVDialogParentInterface.h"
#include "gui/TORVWheelGuard.h"
#include "settings/TORVConfig.h"
#include "settings/TORVGeneralSettings.h"
#include "ui_TORVCursorToolDialog.h"
#include "utils/TORVDisplayMode.h"
#include "utils/TORVLog.h"
#include "visualization/TORVColormap.h"
#include "visualization/TORVPointWidget.h"
#include "visualization/TORVRenderer.h"
#include "visualization/TORVSceneGrid.h"

#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QMouseEvent>
#include <QSettings>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyledItemDelegate>

#include <algorithm>
#include <cassert>

namespace
{

constexpr double EmptySwatchAtNight = 0.12; // opacity: white would be the brightest thing in the room
constexpr int ContentWidth = 272;           // at least
constexpr int SceneMargin = 24;             // of the place where the dialog stands the first time

// A role is an attribute that the style sheet looks at.
void setRole(QWidget* widget, const char* name, const QVariant& value)
{
    if (widget->property(name) != value) {
        widget->setProperty(name, value);
        widget->style()->unpolish(widget);
        widget->style()->polish(widget);
    }
}

// No text stands for a value that there is not.
void setText(QLabel* label, const QString& text)
{
    label->setText(text.isEmpty() ? TORVCursorToolDialog::tr("NA") : text);
    setRole(label, "textRole", text.isEmpty() ? QStringLiteral("missing") : QStringLiteral("value"));
}

void reserve(QWidget* label, const QString& text)
{
    label->ensurePolished();
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(text));
}

std::array<double, 6> stretched(std::array<double, 6> bounds, double verticalScale)
{
    bounds[4] *= verticalScale;
    bounds[5] *= verticalScale;
    return bounds;
}

} // namespace

TORVCursorToolDialog::TORVCursorToolDialog(QWidget* parent, TORVDialogParentInterface* window)
    : QDialog(parent), _ui(std::make_unique<Ui::TORVCursorToolDialog>()), _window(window)
{
    assert(_window);
    _ui->setupUi(this);
    _ui->homeCombo->setItemDelegate(new QStyledItemDelegate(_ui->homeCombo));
    _ui->lowerHalf->setVisible(_ui->expandButton->isChecked());
    _dimming = new QGraphicsOpacityEffect(_ui->colorButton);
    _dimming->setOpacity(EmptySwatchAtNight);
    _ui->colorButton->setGraphicsEffect(_dimming);
    TORVWheelGuard::guard(this);
    enableControls(false);
    invalidateValues();
}

TORVCursorToolDialog::~TORVCursorToolDialog() = default;

void TORVCursorToolDialog::showDialog()
{
    if (!isVisible()) {
        restorePosition();
    }
    show();
    raise();
    updateValues();
}

void TORVCursorToolDialog::hideDialog()
{
    storePosition();
    hide();
    switchCursor(false);
}

bool TORVCursorToolDialog::dialogVisible() const
{
    return isVisible();
}

// The title bar's button and the Escape key.
void TORVCursorToolDialog::done(int result)
{
    hideDialog();
    QDialog::done(result);
}

void TORVCursorToolDialog::updateValues()
{
    const TORVFile::CPtr file3d = currentFile();
    reserveWidths();
    enableControls(file3d != nullptr);
    if (!file3d) {
        _forceReset = true;
        switchCursor(false);
        invalidateValues();
        return;
    }
    if (_forceReset) {
        resetCursor();
        return;
    }
    placePointWidget(*file3d);
    showReadings(file3d);
    switchCursor(isVisible());
}

void TORVCursorToolDialog::resetCursor()
{
    const TORVFile::CPtr file3d = currentFile();
    assert(file3d);
    _forceReset = false;
    reserveWidths();
    placePointWidget(*file3d);
    const double elevation = TORVSceneGrid(*file3d).elevation;
    _cursor = {0.0, 0.0, elevation};
    if (TORVPointWidget* const widget = pointWidget()) {
        widget->setCursor({0.0, 0.0, elevation * verticalScale()});
        _cursor = fromScene(widget->getCursor());
    }
    showReadings(file3d);
    switchCursor(isVisible());
}

void TORVCursorToolDialog::forceReset()
{
    TORVLog::Instance()->logDebug(QStringLiteral("Force reset cursor tool!"));
    _forceReset = true;
}

void TORVCursorToolDialog::newCursorPosition(const TORVPoint3D& point)
{
    _cursor = fromScene(point);
    updateValues();
}

void TORVCursorToolDialog::on_expandButton_toggled(bool expanded)
{
    _ui->lowerHalf->setVisible(expanded);
}

void TORVCursorToolDialog::on_homeCombo_currentIndexChanged(int index)
{
    if (index == CUSTOM && !_customHome) {
        takeCursorAsHome();
    }
    updateValues();
    render();
}

void TORVCursorToolDialog::on_homePointButton_pressed()
{
    takeCursorAsHome();
    updateValues();
    render();
}

void TORVCursorToolDialog::changeEvent(QEvent* event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::StyleChange && _dimming) {
        dimSwatch();
    }
}

void TORVCursorToolDialog::mouseDoubleClickEvent(QMouseEvent* event)
{
    event->ignore();
}

TORVFile::CPtr TORVCursorToolDialog::currentFile() const
{
    const TORVDataFrame::CPtr frame = _window->getCurrentDataFrame();
    const TORVFileLeaf::Ptr leaf = frame ? frame->getData3d() : nullptr;
    return leaf ? leaf->getFile() : nullptr;
}

TORVPointWidget* TORVCursorToolDialog::pointWidget() const
{
    TORVRenderer* const renderer = _window->getCurrentRenderer();
    return renderer ? renderer->getPointWidget() : nullptr;
}

double TORVCursorToolDialog::verticalScale() const
{
    return _window->getCurrentGeneralSettings()->getVerticalScale();
}

TORVPoint3D TORVCursorToolDialog::fromScene(const TORVPoint3D& point) const
{
    return {point.x, point.y, point.z / verticalScale()};
}

void TORVCursorToolDialog::switchCursor(bool on)
{
    if (TORVRenderer* const renderer = _window->getCurrentRenderer()) {
        renderer->togglePointWidget(on, true);
    }
}

void TORVCursorToolDialog::render()
{
    if (TORVRenderer* const renderer = _window->getCurrentRenderer()) {
        renderer->render();
    }
}

// Another box or scale moves the 3-D cursor, which keeps its part of the box's height.
void TORVCursorToolDialog::placePointWidget(const TORVFile& file)
{
    adoptSite(file);
    TORVPointWidget* const widget = pointWidget();
    if (!widget) {
        return;
    }
    const double scale = verticalScale();
    const std::array<double, 6> bounds = stretched(TORVCursorReading::calculateBounds(file), scale);
    widget->setVerticalScale(scale);
    if (!std::equal(bounds.begin(), bounds.end(), widget->getBounds())) {
        widget->setBounds(bounds.data());
        _cursor = fromScene(widget->getCursor());
    }
}

// Another radar has another plane.
void TORVCursorToolDialog::adoptSite(const TORVFile& file)
{
    if (_projection == file.getGeoProjection()) {
        return;
    }
    if (_customHome) {
        moveCustomHome(file);
    }
    _projection = file.getGeoProjection();
}

void TORVCursorToolDialog::moveCustomHome(const TORVFile& file)
{
    const TORVCoordinate place = _projection->projectToLatLon({_customHome->x, _customHome->y, 0.0});
    const std::array<double, 6> bounds = TORVCursorReading::calculateBounds(file);
    const double reach = std::max(bounds[1] - bounds[0], bounds[3] - bounds[2]);
    if (file.getSiteCoordinates().getDistanceTo(place) > reach) {
        _customHome.reset();
        selectHome(RADAR_SITE);
        return;
    }
    const TORVPoint3D moved = file.getGeoProjection()->projectFromLatLon(place);
    _customHome = TORVPoint3D{moved.x, moved.y, _customHome->z};
}

TORVPoint3D TORVCursorToolDialog::homePoint(const TORVFile& file) const
{
    if (_ui->homeCombo->currentIndex() == CUSTOM && _customHome) {
        return *_customHome;
    }
    return {0.0, 0.0, TORVSceneGrid(file).elevation};
}

// Without a place on the Earth the home point stays what it is.
void TORVCursorToolDialog::takeCursorAsHome()
{
    const TORVFile::CPtr file3d = currentFile();
    if (file3d && TORVCursorReading::isOnEarth(*file3d, _cursor)) {
        adoptSite(*file3d);
        _customHome = _cursor;
    }
    selectHome(_customHome ? CUSTOM : RADAR_SITE);
}

void TORVCursorToolDialog::selectHome(Home home)
{
    const QSignalBlocker blocker(_ui->homeCombo);
    _ui->homeCombo->setCurrentIndex(home);
}

void TORVCursorToolDialog::enableControls(bool on)
{
    _ui->homeCombo->setEnabled(on);
    _ui->homePointButton->setEnabled(on);
}

void TORVCursorToolDialog::invalidateValues()
{
    const TORVDataType none(TORVColormap::None);
    _ui->label_unit->setText(none.getQuantityUnit());
    _ui->label_quantity->setText(none.getQuantityName());
    updateRightSide(none, {}, {});
    clearLeftSide();
}

void TORVCursorToolDialog::showReadings(const TORVFile::CPtr& file3d)
{
    const TORVDataType type = file3d->getDataType();
    const Place place = placeOfCursor(*file3d);
    const QColor color = colorOf(type, place.sample);
    _ui->label_unit->setText(type.getQuantityUnit());
    _ui->label_quantity->setText(type.getQuantityName());
    updateRightSide(type, place, color);

    const TORVPoint3D home = homePoint(*file3d);
    if (place.location && TORVCursorReading::isOnEarth(*file3d, home)) {
        updateLeftSide(TORVCursorReading::homePointCalculations(file3d, home, _cursor), home.z);
    } else {
        clearLeftSide();
    }
    if (TORVPointWidget* const widget = pointWidget()) {
        const bool isCustom = _ui->homeCombo->currentIndex() == CUSTOM;
        widget->setHome(home, isCustom ? tr("Custom") : file3d->getSite());
        widget->setMarkerColor(color);
    }
}

TORVCursorToolDialog::Place TORVCursorToolDialog::placeOfCursor(const TORVFile& file) const
{
    if (!TORVCursorReading::isOnEarth(file, _cursor)) {
        return {};
    }
    Place place;
    place.sample = TORVCursorReading::sample(file, _window->getCurrentVTK3DDataSet(), _cursor);
    place.altitude = _cursor.z;
    place.location = TORVCursorReading::location(file, _cursor);
    const boost::shared_ptr<TORVTerrainSet> terrain = _window->getCurrentDataFrame()->getTerrainSet();
    place.ground = TORVCursorReading::groundElevation(terrain.get(), *place.location);
    return place;
}

QColor TORVCursorToolDialog::colorOf(const TORVDataType& type, std::optional<unsigned int> sample) const
{
    if (!sample) {
        return {};
    }
    const boost::shared_ptr<const TORVColormap> colormap = _window->getCurrentColorMap();
    const bool isDisplay = colormap->getValueRange() == TORVColormap::DISPLAY_VALUES;
    const std::array<int, 3> rgb = colormap->getColor(isDisplay ? type.absoluteToDisplayValue(*sample) : *sample);
    return {rgb[0], rgb[1], rgb[2]};
}

void TORVCursorToolDialog::updateRightSide(const TORVDataType& type, const Place& place, const QColor& color)
{
    const boost::shared_ptr<const TORVGeneralSettings> settings = _window->getCurrentGeneralSettings();
    paintSwatch(color);
    _ui->label_value->setText(place.sample ? type.getDisplayStr(static_cast<int>(*place.sample)) : tr("NA"));
    setRole(_ui->label_value, "missing", !place.sample);
    setText(_ui->label_altitude, place.altitude ? TORVCursorText::height(*settings, *place.altitude) : QString());
    setText(_ui->label_terrain, place.ground ? TORVCursorText::height(*settings, *place.ground) : QString());
    setText(_ui->label_latitude, place.location ? settings->formatLatitude(*place.location) : QString());
    setText(_ui->label_longitude, place.location ? settings->formatLongitude(*place.location) : QString());
}

void TORVCursorToolDialog::updateLeftSide(const TORVCursorReading::FromHome& result, double homeAltitude)
{
    const boost::shared_ptr<const TORVGeneralSettings> settings = _window->getCurrentGeneralSettings();
    setText(_ui->label_home, settings->formatCoordinates(result.home, TORVCoordinate::LATITUDE_AND_LONGITUDE));
    setText(_ui->label_homeAltitude, TORVCursorText::height(*settings, homeAltitude));
    setText(_ui->label_northSouth, TORVCursorText::directed(*settings, result.northKm, tr(" N"), tr(" S")));
    setText(_ui->label_eastWest, TORVCursorText::directed(*settings, result.eastKm, tr(" E"), tr(" W")));
    setText(_ui->label_range, TORVCursorText::distance(*settings, result.rangeKm));
    setText(_ui->label_groundDistance, TORVCursorText::distance(*settings, result.groundKm));
    _ui->label_groundDistance->setToolTip(
        tr("Straight distance from the home point in the plane of the scene; with the heights it is %1")
            .arg(TORVCursorText::distance(*settings, result.slantKm)));
    setText(_ui->label_bearing, TORVCursorText::angle(result.bearingDeg));
    setText(_ui->label_elevation, TORVCursorText::angle(result.elevationDeg));
}

void TORVCursorToolDialog::clearLeftSide()
{
    _ui->label_groundDistance->setToolTip(tr("Straight distance from the home point in the plane of the scene"));
    for (QLabel* const label :
         {_ui->label_home, _ui->label_homeAltitude, _ui->label_northSouth, _ui->label_eastWest, _ui->label_range,
          _ui->label_groundDistance, _ui->label_bearing, _ui->label_elevation}) {
        setText(label, {});
    }
}

void TORVCursorToolDialog::paintSwatch(const QColor& color)
{
    _isSwatchEmpty = !color.isValid();
    const QColor shown = _isSwatchEmpty ? QColor(255, 255, 255) : color;
    const QString style = QStringLiteral("QPushButton { background-color: rgb(%1, %2, %3); }")
                              .arg(shown.red())
                              .arg(shown.green())
                              .arg(shown.blue());
    if (_ui->colorButton->styleSheet() != style) {
        _ui->colorButton->setStyleSheet(style);
    }
    dimSwatch();
}

void TORVCursorToolDialog::dimSwatch()
{
    _dimming->setEnabled(_isSwatchEmpty && TORVDisplayMode::isNight());
}

// Numbers that grow or change their sign move nothing, and the lower half takes its width even where it is folded.
void TORVCursorToolDialog::reserveWidths()
{
    const TORVFile::CPtr file3d = currentFile();
    const TORVDataType type = file3d ? file3d->getDataType() : TORVDataType(TORVColormap::None);
    reserve(_ui->label_value, TORVCursorText::widestValue(type));
    reserve(_ui->label_home, TORVCursorText::widestCoordinates(*_window->getCurrentGeneralSettings()));
    _ui->foldLine->setMinimumWidth(std::max(ContentWidth, _ui->lowerHalf->sizeHint().width()));
}

void TORVCursorToolDialog::storePosition()
{
    if (!isVisible()) {
        return;
    }
    const QByteArray geometry = saveGeometry();
    const bool isExpanded = _ui->expandButton->isChecked();
    TORVConfig* const config = TORVConfig::instance();
    QSettings* const settings = config->get();
    settings->beginGroup(TORVConfig::DIALOG_GROUP);
    settings->setValue(TORVConfig::DIALOG_CURSORTOOL_POS, geometry);
    settings->setValue(TORVConfig::DIALOG_CURSORTOOL_EXPANDED, isExpanded);
    settings->endGroup();
    config->release();
}

void TORVCursorToolDialog::restorePosition()
{
    TORVConfig* const config = TORVConfig::instance();
    QSettings* const settings = config->get();
    settings->beginGroup(TORVConfig::DIALOG_GROUP);
    const QByteArray geometry = settings->value(TORVConfig::DIALOG_CURSORTOOL_POS).toByteArray();
    const bool isExpanded =
        settings->value(TORVConfig::DIALOG_CURSORTOOL_EXPANDED, _ui->expandButton->isChecked()).toBool();
    settings->endGroup();
    config->release();

    _ui->expandButton->setChecked(isExpanded);
    layout()->activate();
    if (restoreGeometry(geometry)) {
        setWindowState(Qt::WindowNoState);
    } else if (!_isPlaced) {
        moveToDefaultPlace();
    }
    _isPlaced = true;
}

// As far from the corner as to have room for the lower half, whether it is unfolded or not.
void TORVCursorToolDialog::moveToDefaultPlace()
{
    if (!parentWidget()) {
        return;
    }
    const QWidget* scene = parentWidget()->findChild<QWidget*>(QStringLiteral("sceneWidget"));
    if (!scene) {
        scene = parentWidget();
    }
    const QRect area(scene->mapToGlobal(QPoint(0, 0)), scene->size());
    const QWidget* const window = parentWidget()->window();
    const int titleBar = std::max(window->geometry().top() - window->frameGeometry().top(), 0);
    const int folded = _ui->expandButton->isChecked() ? 0 : _ui->lowerHalf->sizeHint().height();
    const QSize size = layout()->totalSizeHint();
    const int left = area.right() + 1 - SceneMargin - size.width();
    const int top = area.bottom() + 1 - SceneMargin - size.height() - folded - titleBar;
    move(left, std::max(top, area.top() + SceneMargin));
}
