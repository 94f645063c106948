#include "visualization/TORVVisualGroup.h"

#include "settings/TORVLayerParameters.h"
#include "utils/TORVLog.h"

#include <boost/make_shared.hpp>

#include <cassert>

TORVVisualGroup::Ptr TORVVisualGroup::makeGroup(int id)
{
    Ptr element = boost::make_shared<TORVVisualGroup>(id);
    assert(element.get());
    return element;
}

TORVVisualGroup::TORVVisualGroup(int id) : _id(id) {}

TORVVisualGroup::~TORVVisualGroup() = default;

void TORVVisualGroup::update(boost::shared_ptr<const TORVLayerParameters> params, bool visible)
{
    Q_UNUSED(visible)
    if (!params) {
        TORVLog::Instance()->logDebug(QStringLiteral("No parameters -> invalidate visual group."));
        invalidate();
        return;
    }
    _params = std::move(params);
}

void TORVVisualGroup::invalidate()
{
    for (const TORVVisualElement::Ptr& element : _elements) {
        element->invalidate();
    }
    _params.reset();
}
