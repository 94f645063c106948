// The rows of layers: what the scene is to show.

#include "gui/TORVGUI.h"
#include "settings/TORVDisplayState.h"
#include "utils/TORVLog.h"

#include <QKeySequence>

#include <algorithm>
#include <cassert>

void TORVGUI::makeLayerRows()
{
    _layerRows = {
        {TORVDisplayLayer::GROUP_RADARLAYERS, pushButton_RadarLayersVisible, pushButton_RadarLayersAlpha,
         horizontalSlider_RadarGroup, &TORVGUI::toggleRadarLayers, "Radar layers visibility "},
        {TORVDisplayLayer::LAYER_3DOUTLINE, pushButton_OutlineVisible, pushButton_OutlineAlpha,
         horizontalSlider_Outline, &TORVGUI::toggleOutline, "Outline visibility "},
        {TORVDisplayLayer::LAYER_3DPRODUCT, pushButton_3DProductVisible, pushButton_3DProductAlpha,
         horizontalSlider_3DProduct, &TORVGUI::toggle3DProduct, "3D product visibility "},
        {TORVDisplayLayer::LAYER_2DPRODUCT, pushButton_2DProductVisible, pushButton_2DProductAlpha,
         horizontalSlider_2DProduct, &TORVGUI::toggle2DProduct, "2D product visibility "},
        {TORVDisplayLayer::GROUP_GEOLAYERS, pushButton_GEOLayersVisible, pushButton_GEOLayersAlpha,
         horizontalSlider_GEOGroup, &TORVGUI::toggleGeoLayers, "Geo visibility "},
        {TORVDisplayLayer::LAYER_3DTERRAIN, pushButton_3DTerrainVisible, pushButton_3DTerrainAlpha,
         horizontalSlider_3DTerrain, &TORVGUI::toggle3DTerrain, "Terrain visibility "},
        {TORVDisplayLayer::LAYER_LATLONGRID, pushButton_LatLonGridVisible, pushButton_LatLonGridAlpha,
         horizontalSlider_LatLonGrid, &TORVGUI::toggleLatLonGrid, "Lat/lon grid visibility "},
        {TORVDisplayLayer::LAYER_RANGERINGS, pushButton_RangeRingsVisible, pushButton_RangeRingsAlpha,
         horizontalSlider_RangeRings, &TORVGUI::toggleRangeRings, "Range rings visibility "},
        {TORVDisplayLayer::LAYER_GEOLABELS, pushButton_LandmarksVisible, pushButton_LandmarksAlpha,
         horizontalSlider_Landmarks, &TORVGUI::toggleGeoLabels, "Landmarks visibility "},
    };
    int key = Qt::Key_1;
    for (const LayerRow& row : _layerRows) {
        row.alpha->hide(); // opacity comes with the presets alone
        row.opacity->hide();
        row.button->setShortcut(QKeySequence(Qt::CTRL | key++));
        connect(row.button, &QPushButton::clicked, this, [this, &row](bool checked) { clickLayer(row, checked); });
    }
}

const TORVGUI::LayerRow& TORVGUI::rowOf(int key) const
{
    const auto row =
        std::find_if(_layerRows.begin(), _layerRows.end(), [key](const LayerRow& each) { return each.key == key; });
    assert(row != _layerRows.end());
    return *row;
}

void TORVGUI::toggleLayer(int key, bool on)
{
    _displayState->getLayer(key)->setEnabled(on);
    rowOf(key).button->setChecked(on);
}

void TORVGUI::toggleMembers(int group, bool on)
{
    toggleLayer(group, on);
    for (const TORVDisplayLayer::KeyInfo& info : TORVDisplayLayer::keys()) {
        if (!info.isGroup && info.group == group) {
            (this->*rowOf(info.key).toggle)(on);
        }
    }
}

void TORVGUI::toggleRadarLayers(bool on)
{
    toggleMembers(TORVDisplayLayer::GROUP_RADARLAYERS, on);
}

void TORVGUI::toggleOutline(bool on)
{
    toggleLayer(TORVDisplayLayer::LAYER_3DOUTLINE, on);
}

void TORVGUI::toggle3DProduct(bool on)
{
    toggleLayer(TORVDisplayLayer::LAYER_3DPRODUCT, on);
}

void TORVGUI::toggle2DProduct(bool on)
{
    toggleLayer(TORVDisplayLayer::LAYER_2DPRODUCT, on);
}

void TORVGUI::toggleGeoLayers(bool on)
{
    toggleMembers(TORVDisplayLayer::GROUP_GEOLAYERS, on);
}

void TORVGUI::toggle3DTerrain(bool on)
{
    toggleLayer(TORVDisplayLayer::LAYER_3DTERRAIN, on);
}

void TORVGUI::toggleLatLonGrid(bool on)
{
    toggleLayer(TORVDisplayLayer::LAYER_LATLONGRID, on);
}

void TORVGUI::toggleGeoLabels(bool on)
{
    toggleLayer(TORVDisplayLayer::LAYER_GEOLABELS, on);
}

void TORVGUI::toggleRangeRings(bool on)
{
    toggleLayer(TORVDisplayLayer::LAYER_RANGERINGS, on);
}

// A layer that is switched on would not be seen in a group that is off; the last one off leaves its group on.
void TORVGUI::clickLayer(const LayerRow& row, bool checked)
{
    TORVLog::Instance()->logDebug(QLatin1String(row.debugWord) +
                                  (checked ? QLatin1String("on") : QLatin1String("off")));
    (this->*row.toggle)(checked);
    const auto& keys = TORVDisplayLayer::keys();
    const auto info = std::find_if(keys.begin(), keys.end(), [&row](const auto& each) { return each.key == row.key; });
    if (!info->isGroup) {
        toggleLayer(info->group, checked || rowOf(info->group).button->isChecked());
    }
    comboBox_displayState->setCurrentIndex(0);
    _chosenDisplayState = comboBox_displayState->currentText();
    redraw();
}

void TORVGUI::updateGUIGroups()
{
    for (const LayerRow& row : _layerRows) {
        const TORVDisplayLayer::Ptr layer = _displayState->getLayer(row.key);
        row.opacity->setValue(layer->getOpacity());
        row.button->setChecked(layer->isEnabled());
    }
}
