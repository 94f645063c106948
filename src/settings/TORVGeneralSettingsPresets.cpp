// The two lists of named presets.
#include "settings/TORVConfig.h"
#include "settings/TORVGeneralSettings.h"
#include "settings/TORVPresetArray.h"
#include "utils/TORVLog.h"
#include "utils/TORVSettingsReader.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

using Entry = TORVPresetArray::Entry;

constexpr int FullOpacity = TORVDisplayLayer::FullOpacity;
constexpr double FurthestCoordinate_m = 1e9;

struct LayerKeys
{
    int layer;
    QString visible;
    QString opacity;
};

const QVector<LayerKeys>& layerKeys()
{
    static const QVector<LayerKeys> all = [] {
        QVector<LayerKeys> keys;
        for (const int key : TORVDisplayLayer::persistedKeys()) {
            const QString number = QString::number(key);
            keys.append({key, TORVConfig::DISPLAY_STATE_LAYER_VISIBLE + number,
                         TORVConfig::DISPLAY_STATE_LAYER_OPACITY + number});
        }
        return keys;
    }();
    return all;
}

const TORVPresetArray& displayStateArray()
{
    static const TORVPresetArray array = [] {
        QStringList keys;
        for (const LayerKeys& layer : layerKeys()) {
            keys << layer.visible << layer.opacity;
        }
        return TORVPresetArray(TORVConfig::DISPLAY_STATE_GROUP, TORVConfig::DISPLAY_STATE_ARRAY,
                               TORVConfig::DISPLAY_STATE_NAME, keys);
    }();
    return array;
}

// Position and direction, x, y, z each.
using Numbers = std::array<double, 6>;

const QStringList& viewAngleKeys()
{
    static const QStringList keys = {TORVConfig::VIEW_ANGLE_CAMPOS_X, TORVConfig::VIEW_ANGLE_CAMPOS_Y,
                                     TORVConfig::VIEW_ANGLE_CAMPOS_Z, TORVConfig::VIEW_ANGLE_CAMDIR_X,
                                     TORVConfig::VIEW_ANGLE_CAMDIR_Y, TORVConfig::VIEW_ANGLE_CAMDIR_Z};
    return keys;
}

const TORVPresetArray& viewAngleArray()
{
    static const TORVPresetArray array(TORVConfig::VIEW_ANGLE_GROUP, TORVConfig::VIEW_ANGLE_ARRAY,
                                       TORVConfig::VIEW_ANGLE_NAME, viewAngleKeys());
    return array;
}

Entry entryOf(const TORVDisplayState& state)
{
    Entry entry = {{TORVConfig::DISPLAY_STATE_NAME, state.getName()}};
    for (const LayerKeys& keys : layerKeys()) {
        if (const TORVDisplayLayer::CPtr layer = state.getLayer(keys.layer)) {
            entry.insert(keys.visible, layer->isEnabled());
            entry.insert(keys.opacity, layer->getOpacity());
        }
    }
    return entry;
}

Entry entryOf(const TORVViewAngle& angle)
{
    Entry entry = {{TORVConfig::VIEW_ANGLE_NAME, angle.getName()}};
    const TORVPoint3D& position = angle.getPosition();
    const TORVPoint3D& direction = angle.getDirection();
    const Numbers numbers = {position.x, position.y, position.z, direction.x, direction.y, direction.z};
    for (int i = 0; i < viewAngleKeys().size(); ++i) {
        entry.insert(viewAngleKeys().at(i), numbers[static_cast<std::size_t>(i)]);
    }
    return entry;
}

QString nameIn(const Entry& entry, const TORVPresetArray& array)
{
    return TORVSettingsReader::text(entry.value(array.nameKey()), {});
}

// What the file lacks is off and at 0: a layer that the writing version didn't know.
TORVDisplayState::Ptr displayStateOf(const Entry& entry)
{
    const auto state = boost::make_shared<TORVDisplayState>();
    state->setName(nameIn(entry, displayStateArray()));
    for (const LayerKeys& keys : layerKeys()) {
        if (const TORVDisplayLayer::Ptr layer = state->getLayer(keys.layer)) {
            layer->setEnabled(TORVSettingsReader::flag(entry.value(keys.visible), false));
            layer->setOpacity(TORVSettingsReader::integer(entry.value(keys.opacity), 0, 0, FullOpacity));
        }
    }
    return state;
}

Numbers numbersOf(const Entry& entry)
{
    Numbers numbers = {};
    for (int i = 0; i < viewAngleKeys().size(); ++i) {
        const QVariant value = entry.value(viewAngleKeys().at(i));
        const double number = value.isValid() ? value.toDouble() : 0.0;
        if (!(std::abs(number) <= FurthestCoordinate_m)) {
            return {};
        }
        numbers[static_cast<std::size_t>(i)] = number;
    }
    return numbers;
}

TORVViewAngle::Ptr viewAngleOf(const Entry& entry)
{
    const Numbers n = numbersOf(entry);
    return boost::make_shared<TORVViewAngle>(nameIn(entry, viewAngleArray()), TORVPoint3D{n[0], n[1], n[2]},
                                             TORVPoint3D{n[3], n[4], n[5]});
}

template <typename Preset>
Entry currentEntry(const Preset& current, const TORVPresetArray& array)
{
    Entry entry = entryOf(current);
    entry.insert(array.nameKey(), TORVConfig::VALUE_CUSTOM);
    return entry;
}

template <typename Preset>
QVector<Entry> allEntries(const Preset& current, const QList<boost::shared_ptr<Preset>>& presets,
                          const TORVPresetArray& array)
{
    TORVLog::Instance()->logDebug(QStringLiteral("Write %1 presets").arg(presets.size()));
    QVector<Entry> entries = {currentEntry(current, array)};
    for (int i = 0; i < presets.size(); ++i) {
        TORVLog::Instance()->logDebug(QStringLiteral("Write preset: #%1").arg(i));
        TORVLog::Instance()->logDebug(QLatin1String("name=") + presets.at(i)->getName());
        entries.append(entryOf(*presets.at(i)));
    }
    return entries;
}

template <typename Preset>
QStringList namesOf(const QList<boost::shared_ptr<Preset>>& presets)
{
    QStringList names(TORVConfig::defaultValueTranslated());
    for (const boost::shared_ptr<Preset>& preset : presets) {
        names << preset->getName();
    }
    return names;
}

} // namespace

void TORVGeneralSettings::loadDisplayStates(const TORVDisplayState::Ptr& current)
{
    const QVector<Entry> entries = displayStateArray().read();
    for (int i = 0; i < entries.size(); ++i) {
        const TORVDisplayState::Ptr state = displayStateOf(entries[i]);
        if (i > 0) {
            _displayStates.append(state);
            continue;
        }
        state->setName(TORVConfig::VALUE_CUSTOM);
        current->copyState(*state);
    }
}

void TORVGeneralSettings::saveDisplayStates(const TORVDisplayState::Ptr& current) const
{
    displayStateArray().write(allEntries(*current, _displayStates, displayStateArray()));
}

void TORVGeneralSettings::saveCurrentDisplayState(const TORVDisplayState::Ptr& current) const
{
    displayStateArray().writeFirst(currentEntry(*current, displayStateArray()));
}

void TORVGeneralSettings::loadViewAngles(const TORVViewAngle::Ptr& current)
{
    const QVector<Entry> entries = viewAngleArray().read();
    for (int i = 0; i < entries.size(); ++i) {
        const TORVViewAngle::Ptr angle = viewAngleOf(entries[i]);
        TORVLog::Instance()->logDebug(QStringLiteral("Read preset: #%1").arg(i));
        TORVLog::Instance()->logDebug(QLatin1String("name=") + angle->getName());
        if (i > 0) {
            _viewAngles.append(angle);
            continue;
        }
        angle->setName(TORVConfig::VALUE_CUSTOM);
        *current = *angle;
    }
}

void TORVGeneralSettings::saveViewAngles(const TORVViewAngle::Ptr& current) const
{
    viewAngleArray().write(allEntries(*current, _viewAngles, viewAngleArray()));
}

void TORVGeneralSettings::saveCurrentViewAngle(const TORVViewAngle::Ptr& current) const
{
    viewAngleArray().writeFirst(currentEntry(*current, viewAngleArray()));
}

QStringList TORVGeneralSettings::getDisplayStateNames() const
{
    return namesOf(_displayStates);
}

QStringList TORVGeneralSettings::getViewAngleNames() const
{
    return namesOf(_viewAngles);
}
