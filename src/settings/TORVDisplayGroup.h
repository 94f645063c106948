#pragma once

#include "settings/TORVDisplayLayer.h"

#include <QStringList>
#include <QVector>

/**
 * A group of layers, with a visibility and an opacity of its own and a fold in the layer panel.
 *
 * Thread: as TORVDisplayLayer.
 */
class TORVDisplayGroup final : public TORVDisplayLayer
{
public:
    using Ptr = boost::shared_ptr<TORVDisplayGroup>;
    using CPtr = boost::shared_ptr<const TORVDisplayGroup>;

    /// Without members.
    explicit TORVDisplayGroup(int key, bool tag = true);

    bool isOpen() const { return _open; }
    void setOpen(bool open) { _open = open; }
    const QVector<TORVDisplayLayer::Ptr>& getMembers() const { return _members; }
    void addMember(const TORVDisplayLayer::Ptr& layer) { _members.append(layer); }

    /// Null where no member has the key.
    TORVDisplayLayer::Ptr getLayer(int key) const;

    /// What the user chose, of the group and of its members by their keys; members that `other` lacks go, members that
    /// only `other` has are made.
    void copyState(const TORVDisplayGroup& other);

    /// Nothing here makes a change, and no reason is added. Groups of another key or size stop the process.
    bool hasChanged(const TORVDisplayGroup::CPtr& prevGroup, QStringList* reasons) const;

    void resetParameters() override;
    QStringList printLines() const; ///< for the state's debug dump

private:
    bool _open = true;
    QVector<TORVDisplayLayer::Ptr> _members;
};
