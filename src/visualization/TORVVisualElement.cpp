#include "visualization/TORVVisualElement.h"

#include "settings/TORVDisplayLayer.h"
#include "visualization/TORV2DVisualElement.h"
#include "visualization/TORV3DOutlineElement.h"
#include "visualization/TORV3DTerrainElement.h"
#include "visualization/TORV3DVisualElement.h"
#include "visualization/TORVGeoLabelsElement.h"
#include "visualization/TORVLatLonGridElement.h"
#include "visualization/TORVRadarRingsElement.h"

#include <boost/make_shared.hpp>

#include <cassert>

namespace
{

template <class Element>
TORVVisualElement::Ptr make(TORVVisualGroup* parent, int id)
{
    return boost::make_shared<Element>(parent, id);
}

struct Row
{
    int key;
    TORVVisualElement::Ptr (*make)(TORVVisualGroup* parent, int id);
};

const Row Rows[] = {
    {TORVDisplayLayer::LAYER_3DOUTLINE, make<TORV3DOutlineElement>},
    {TORVDisplayLayer::LAYER_3DPRODUCT, make<TORV3DVisualElement>},
    {TORVDisplayLayer::LAYER_2DPRODUCT, make<TORV2DVisualElement>},
    {TORVDisplayLayer::LAYER_3DTERRAIN, make<TORV3DTerrainElement>},
    {TORVDisplayLayer::LAYER_LATLONGRID, make<TORVLatLonGridElement>},
    {TORVDisplayLayer::LAYER_GEOLABELS, make<TORVGeoLabelsElement>},
    {TORVDisplayLayer::LAYER_RANGERINGS, make<TORVRadarRingsElement>},
};

} // namespace

TORVVisualElement::Ptr TORVVisualElement::makeElement(TORVVisualGroup* parent, int id)
{
    assert(parent);
    Ptr element;
    for (const Row& row : Rows) {
        if (row.key == id) {
            element = row.make(parent, id);
        }
    }
    assert(element.get());
    return element;
}

TORVVisualElement::TORVVisualElement(TORVVisualGroup* parent, int id) : _parentGroup(parent), _id(id) {}

TORVVisualElement::~TORVVisualElement() = default;

vtkSmartPointer<vtkProp> TORVVisualElement::getProp()
{
    return {};
}

void TORVVisualElement::invalidate() {}

void TORVVisualElement::place() {}

void TORVVisualElement::restyle() {}
