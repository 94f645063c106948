#include "visualization/TORVVisualizationPipelineItem.h"

#include "utils/TORVLog.h"
#include "visualization/TORV2DVisualElement.h"
#include "visualization/TORV3DVisualElement.h"
#include "visualization/TORVSceneMemory.h"

#include <vtkAlgorithm.h>
#include <vtkDataSet.h>
#include <vtkNew.h>
#include <vtkTimerLog.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cassert>
#include <iterator>
#include <map>

namespace
{

struct Order
{
    int key;
    int order;
};

// Flat things first, as they lie over the ground and under the echo; what marks places last.
const Order Orders[] = {
    {TORVDisplayLayer::LAYER_3DTERRAIN, 0},    {TORVDisplayLayer::LAYER_2DPRODUCT, 100},
    {TORVDisplayLayer::LAYER_LATLONGRID, 101}, {TORVDisplayLayer::LAYER_RANGERINGS, 110},
    {TORVDisplayLayer::LAYER_3DPRODUCT, 200},  {TORVDisplayLayer::LAYER_GEOLABELS, 300},
    {TORVDisplayLayer::LAYER_3DOUTLINE, 301},
};

void logDebug(const QString& text)
{
    TORVLog::Instance()->logDebug(text);
}

QString nameAndKey(const TORVDisplayLayer& layer)
{
    return QStringLiteral("%1 (%2)").arg(layer.getName()).arg(layer.getKey());
}

// Runs from its birth; answers as the log writes it.
class Stopwatch
{
public:
    Stopwatch() { _timer->StartTimer(); }

    QString words()
    {
        _timer->StopTimer();
        return QString::number(_timer->GetElapsedTime(), 'f', 3) + QLatin1String(" seconds.");
    }

private:
    vtkNew<vtkTimerLog> _timer;
};

// What a product's element keeps beside its prop, or for it.
template <class Element>
vtkDataObject* heldData(const TORVVisualElement& element)
{
    const auto* const typed = dynamic_cast<const Element*>(&element);
    return typed && typed->getData() ? typed->getData()->GetOutputDataObject(0) : nullptr;
}

} // namespace

TORVVisualizationPipelineItem::TORVVisualizationPipelineItem(const TORVDisplayState::CPtr& state)
    : _displayState(boost::make_shared<TORVDisplayState>())
{
    _displayState->copyState(*state);
    create();
}

TORVVisualizationPipelineItem::~TORVVisualizationPipelineItem() = default;

void TORVVisualizationPipelineItem::create()
{
    for (const TORVDisplayGroup::Ptr& displayGroup : _displayState->getMembers()) {
        const TORVVisualGroup::Ptr group = TORVVisualGroup::makeGroup(displayGroup->getKey());
        for (const TORVDisplayLayer::Ptr& layer : displayGroup->getMembers()) {
            group->addElement(TORVVisualElement::makeElement(group.get(), layer->getKey()));
        }
        _groups.push_back(group);
    }
}

void TORVVisualizationPipelineItem::update(const std::atomic<bool>& abort)
{
    assert(_displayState);
    keepReplaced();
    Stopwatch total;
    for (auto group = _groups.begin(); group != _groups.end() && !abort; ++group) {
        Stopwatch time;
        const TORVDisplayGroup::Ptr dGroup = _displayState->getGroup((*group)->getId());
        assert(dGroup);
        logDebug(QStringLiteral("group %1-->").arg(nameAndKey(*dGroup)));
        (*group)->update(dGroup->getParameters(), dGroup->isEnabled());
        const auto& elements = (*group)->getElements();
        for (auto element = elements.begin(); element != elements.end() && !abort; ++element) {
            updateElement(**element, abort);
        }
        logDebug(QStringLiteral("<--group %1: %2").arg(nameAndKey(*dGroup), time.words()));
    }
    logDebug(QLatin1String("total: ") + total.words());
    if (abort) {
        logDebug(QStringLiteral("TORVVisualizationPipelineItem::update(): ABORTED!"));
    }
}

void TORVVisualizationPipelineItem::updateElement(TORVVisualElement& element, const std::atomic<bool>& abort)
{
    Stopwatch time;
    const TORVDisplayLayer::Ptr layer = _displayState->getLayer(element.getId());
    assert(layer);
    logDebug(QStringLiteral("layer %1-->").arg(nameAndKey(*layer)));
    element.update(layer->getParameters(), layer->isEnabled(), abort);
    logDebug(QStringLiteral("<--layer %1: %2").arg(nameAndKey(*layer), time.words()));
}

void TORVVisualizationPipelineItem::readResults()
{
    assert(_displayState);
    std::map<int, vtkSmartPointer<vtkProp>> props;
    for (const TORVVisualGroup::Ptr& group : _groups) {
        const TORVDisplayGroup::Ptr dGrp = _displayState->getGroup(group->getId());
        assert(dGrp);
        for (const TORVVisualElement::Ptr& element : group->getElements()) {
            const TORVDisplayLayer::Ptr layer = dGrp->getLayer(element->getId());
            assert(layer);
            layer->setElement(element);
            const vtkSmartPointer<vtkProp> prop = element->getProp();
            if (dGrp->isEnabled() && layer->isEnabled() && prop) {
                const int order = drawingOrderOf(layer->getKey());
                logDebug(QStringLiteral("Add prop: order=%1, layer: %2").arg(order).arg(layer->getName()));
                props[order] = prop;
            }
        }
    }
    _results = vtkSmartPointer<vtkPropAssembly>::New();
    for (const auto& [order, prop] : props) {
        logDebug(QStringLiteral("Add res: order=%1").arg(order));
        _results->AddPart(prop);
    }
}

vtkDataSet* TORVVisualizationPipelineItem::getVTKDataSet() const
{
    if (isBusy()) {
        return nullptr;
    }
    const TORVDisplayLayer::Ptr layer = _displayState->getLayer(TORVDisplayLayer::LAYER_3DPRODUCT);
    const auto element = boost::dynamic_pointer_cast<TORV3DVisualElement>(layer->getElement());
    if (!element || !element->getData()) {
        return nullptr;
    }
    return vtkDataSet::SafeDownCast(element->getData()->GetOutputDataObject(0));
}

template <class Work>
void TORVVisualizationPipelineItem::forEachElement(Work work)
{
    assert(!isBusy());
    for (const TORVVisualGroup::Ptr& group : _groups) {
        for (const TORVVisualElement::Ptr& element : group->getElements()) {
            work(*element);
        }
    }
}

qint64 TORVVisualizationPipelineItem::countMemoryBytes()
{
    TORVSceneMemory memory;
    forEachElement([&memory](TORVVisualElement& element) {
        memory.add(heldData<TORV3DVisualElement>(element));
        memory.add(heldData<TORV2DVisualElement>(element));
        memory.add(element.getProp());
    });
    return memory.getBytes();
}

// Props that stay are kept as well, which does no harm: the element holds them, too.
void TORVVisualizationPipelineItem::keepReplaced()
{
    for (const TORVVisualGroup::Ptr& group : _groups) {
        for (const TORVVisualElement::Ptr& element : group->getElements()) {
            if (const vtkSmartPointer<vtkProp> prop = element->getProp()) {
                _replaced.push_back(prop);
            }
        }
    }
    if (_results) {
        _replaced.emplace_back(_results);
    }
}

void TORVVisualizationPipelineItem::releaseReplaced()
{
    assert(!isBusy());
    _replaced.clear();
}

// Who still asks the other item for the product's image gets none: the elements work for this one now.
void TORVVisualizationPipelineItem::takeOver(TORVVisualizationPipelineItem& other)
{
    assert(!other.isBusy());
    _groups = std::move(other._groups);
    other._groups.clear();
    for (const TORVVisualGroup::Ptr& group : _groups) {
        for (const TORVVisualElement::Ptr& element : group->getElements()) {
            other._displayState->getLayer(element->getId())->setElement({});
            _displayState->getLayer(element->getId())->setElement(element);
        }
    }
}

void TORVVisualizationPipelineItem::place()
{
    forEachElement([](TORVVisualElement& element) { element.place(); });
}

void TORVVisualizationPipelineItem::restyle()
{
    forEachElement([](TORVVisualElement& element) { element.restyle(); });
}

int TORVVisualizationPipelineItem::drawingOrderOf(int key)
{
    const Order* const row =
        std::find_if(std::begin(Orders), std::end(Orders), [key](const Order& entry) { return entry.key == key; });
    assert(row != std::end(Orders));
    return row->order;
}
