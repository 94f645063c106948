#include "settings/TORVDisplayGroup.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cassert>

TORVDisplayGroup::TORVDisplayGroup(int key, bool tag) : TORVDisplayLayer(key, tag ? 1 : 0) {}

TORVDisplayLayer::Ptr TORVDisplayGroup::getLayer(int key) const
{
    const auto hasKey = [key](const TORVDisplayLayer::Ptr& layer) { return layer->getKey() == key; };
    const auto found = std::find_if(_members.begin(), _members.end(), hasKey);
    return found == _members.end() ? TORVDisplayLayer::Ptr() : *found;
}

void TORVDisplayGroup::copyState(const TORVDisplayGroup& other)
{
    TORVDisplayLayer::copyState(other);
    _open = other._open;
    for (const TORVDisplayLayer::Ptr& source : other._members) {
        TORVDisplayLayer::Ptr target = getLayer(source->getKey());
        if (!target) {
            target = boost::make_shared<TORVDisplayLayer>(source->getKey());
            _members.append(target);
        }
        target->copyState(*source);
    }
    const auto isUnknown = [&other](const TORVDisplayLayer::Ptr& layer) { return !other.getLayer(layer->getKey()); };
    _members.erase(std::remove_if(_members.begin(), _members.end(), isUnknown), _members.end());
}

bool TORVDisplayGroup::hasChanged(const TORVDisplayGroup::CPtr& prevGroup, QStringList*) const
{
    assert(getKey() == prevGroup->getKey());
    assert(getMembers().count() == prevGroup->getMembers().count());
    return false;
}

void TORVDisplayGroup::resetParameters()
{
    TORVDisplayLayer::resetParameters();
    for (const TORVDisplayLayer::Ptr& layer : _members) {
        layer->resetParameters();
    }
}

QStringList TORVDisplayGroup::printLines() const
{
    QStringList lines{QStringLiteral("%1, open=%2").arg(stateText()).arg(_open ? 1 : 0)};
    for (const TORVDisplayLayer::Ptr& layer : _members) {
        lines << QLatin1String("  ") + layer->stateText();
    }
    return lines;
}
