#include "settings/TORVDisplayLayer.h"

#include "settings/TORVLayerParameters.h"
#include "visualization/TORVVisualElement.h"

#include <boost/make_shared.hpp>

#include <vtkAssembly.h>
#include <vtkProp3DCollection.h>

#include <algorithm>
#include <cassert>
#include <typeinfo>

namespace
{

using Layer = TORVDisplayLayer;

const std::array<Layer::KeyInfo, Layer::KeyCount> Keys = {{
    {Layer::GROUP_RADARLAYERS, "GROUP_RADARLAYERS", true, Layer::GROUP_RADARLAYERS, 0},
    {Layer::LAYER_3DOUTLINE, "LAYER_3DOUTLINE", false, Layer::GROUP_RADARLAYERS, 2},
    {Layer::LAYER_3DPRODUCT, "LAYER_3DPRODUCT", false, Layer::GROUP_RADARLAYERS, 3},
    {Layer::LAYER_2DPRODUCT, "LAYER_2DPRODUCT", false, Layer::GROUP_RADARLAYERS, 4},
    {Layer::GROUP_GEOLAYERS, "GROUP_GEOLAYERS", true, Layer::GROUP_GEOLAYERS, 1},
    {Layer::LAYER_3DTERRAIN, "LAYER_3DTERRAIN", false, Layer::GROUP_GEOLAYERS, 6},
    {Layer::LAYER_LATLONGRID, "LAYER_LATLONGRID", false, Layer::GROUP_GEOLAYERS, 7},
    {Layer::LAYER_RANGERINGS, "LAYER_RANGERINGS", false, Layer::GROUP_GEOLAYERS, 5},
    {Layer::LAYER_GEOLABELS, "LAYER_GEOLABELS", false, Layer::GROUP_GEOLAYERS, 8},
}};

std::array<int, Layer::KeyCount> inPersistedOrder()
{
    std::array<int, Layer::KeyCount> keys{};
    for (const Layer::KeyInfo& info : Keys) {
        keys.at(static_cast<std::size_t>(info.persistedRank)) = info.key;
    }
    return keys;
}

template <class Parameters>
bool copyIfExactly(const TORVLayerParameters& parameters, TORVLayerParameters::Ptr& copy)
{
    if (typeid(parameters) != typeid(Parameters)) {
        return false;
    }
    copy = boost::make_shared<Parameters>(static_cast<const Parameters&>(parameters));
    return true;
}

template <class... Classes>
TORVLayerParameters::Ptr copyAsFirstOf(const TORVLayerParameters& parameters)
{
    TORVLayerParameters::Ptr copy;
    const bool isCopied = (copyIfExactly<Classes>(parameters, copy) || ...);
    assert(isCopied && "layer parameters of a class that can't be copied");
    return isCopied ? copy : TORVLayerParameters::Ptr();
}

bool isWithoutTiles(vtkProp* terrain)
{
    vtkAssembly* const assembly = vtkAssembly::SafeDownCast(terrain);
    return !assembly || assembly->GetParts()->GetNumberOfItems() == 0;
}

} // namespace

const std::array<TORVDisplayLayer::KeyInfo, TORVDisplayLayer::KeyCount>& TORVDisplayLayer::keys()
{
    return Keys;
}

const std::array<int, TORVDisplayLayer::KeyCount>& TORVDisplayLayer::persistedKeys()
{
    static const std::array<int, KeyCount> keys = inPersistedOrder();
    return keys;
}

QString TORVDisplayLayer::nameOf(int key)
{
    const auto hasKey = [key](const KeyInfo& info) { return info.key == key; };
    const auto found = std::find_if(Keys.begin(), Keys.end(), hasKey);
    return found == Keys.end() ? QString() : QString::fromLatin1(found->name);
}

TORVDisplayLayer::TORVDisplayLayer(int key, int tag) : _key(key), _name(nameOf(key)), _tag(tag) {}

TORVDisplayLayer::~TORVDisplayLayer() = default;

void TORVDisplayLayer::setOpacity(int opacity)
{
    _opacity = std::clamp(opacity, 0, FullOpacity);
}

void TORVDisplayLayer::copyState(const TORVDisplayLayer& other)
{
    _key = other._key;
    _name = other._name;
    _description = other._description;
    _enabled = other._enabled;
    _opacity = other._opacity;
}

void TORVDisplayLayer::setParameters(const TORVLayerParameters::Ptr& parameters)
{
    if (!parameters) {
        _parameters.reset();
        return;
    }
    _parameters = copyAsFirstOf<TORVLayerParameters, TORVLayerParameters3d, TORVLayerParameters3dOutline,
                                TORVLayerParameters2d, TORVLayerParametersTerrain, TORVLayerParametersGeoLabels,
                                TORVLayerParametersRadarRings, TORVLayerParametersLatLonGrid>(*parameters);
}

void TORVDisplayLayer::resetParameters()
{
    _parameters.reset();
    if (_element) {
        _element->invalidate();
    }
}

bool TORVDisplayLayer::isEmpty() const
{
    const vtkSmartPointer<vtkProp> prop = _element ? _element->getProp() : nullptr;
    if (!prop) {
        return true;
    }
    return _key == LAYER_3DTERRAIN && isWithoutTiles(prop);
}

QString TORVDisplayLayer::stateText() const
{
    return QStringLiteral("%1 %2: enabled=%3, opacity=%4").arg(_key).arg(_name).arg(_enabled ? 1 : 0).arg(_opacity);
}
