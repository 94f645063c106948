#include "settings/TORVDisplayState.h"

#include "settings/TORVConfig.h"
#include "utils/TORVLog.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cassert>

TORVDisplayState::TORVDisplayState()
{
    constructDefaultState();
}

TORVDisplayState::TORVDisplayState(QString const&)
{
    constructDefaultState();
}

void TORVDisplayState::constructDefaultState()
{
    _name = TORVConfig::VALUE_DEFAULT;
    _members.clear();
    for (const TORVDisplayLayer::KeyInfo& info : TORVDisplayLayer::keys()) {
        if (info.isGroup) {
            _members.append(boost::make_shared<TORVDisplayGroup>(info.key));
        } else {
            getGroup(info.group)->addMember(boost::make_shared<TORVDisplayLayer>(info.key));
        }
    }
}

TORVDisplayGroup::Ptr TORVDisplayState::getGroup(int key) const
{
    const auto hasKey = [key](const TORVDisplayGroup::Ptr& group) { return group->getKey() == key; };
    const auto found = std::find_if(_members.begin(), _members.end(), hasKey);
    return found == _members.end() ? TORVDisplayGroup::Ptr() : *found;
}

TORVDisplayLayer::Ptr TORVDisplayState::getLayer(int key) const
{
    for (const TORVDisplayGroup::Ptr& group : _members) {
        const TORVDisplayLayer::Ptr layer = group->getKey() == key ? group : group->getLayer(key);
        if (layer) {
            return layer;
        }
    }
    return {};
}

void TORVDisplayState::copyState(const TORVDisplayState& other)
{
    _name = other._name;
    for (const TORVDisplayGroup::Ptr& source : other._members) {
        TORVDisplayGroup::Ptr target = getGroup(source->getKey());
        if (!target) {
            target = boost::make_shared<TORVDisplayGroup>(source->getKey());
            _members.append(target);
        }
        target->copyState(*source);
    }
    const auto isUnknown = [&other](const TORVDisplayGroup::Ptr& group) { return !other.getGroup(group->getKey()); };
    _members.erase(std::remove_if(_members.begin(), _members.end(), isUnknown), _members.end());
}

bool TORVDisplayState::hasChanged(const TORVDisplayState& prevState, QStringList* reasons) const
{
    assert(getMembers().count() == prevState.getMembers().count());
    for (int i = 0; i < _members.count(); ++i) {
        _members.at(i)->hasChanged(prevState.getMembers().at(i), reasons);
    }
    return true;
}

void TORVDisplayState::resetParameters()
{
    for (const TORVDisplayGroup::Ptr& group : std::as_const(_members)) {
        group->resetParameters();
    }
}

bool TORVDisplayState::has2DEnabled() const
{
    const TORVDisplayLayer::Ptr layer = getLayer(TORVDisplayLayer::LAYER_2DPRODUCT);
    return layer && layer->isEnabled();
}

void TORVDisplayState::printDisplayState() const
{
    TORVLog* const log = TORVLog::Instance();
    log->logDebug(QLatin1String("TORVDisplayState: ") + _name);
    for (const TORVDisplayGroup::Ptr& group : _members) {
        for (const QString& line : group->printLines()) {
            log->logDebug(QLatin1String("  ") + line);
        }
    }
}
