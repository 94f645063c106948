#pragma once

#include "settings/TORVDisplayGroup.h"

/**
 * What the scene shows: seven layers in two groups. The live state of a scene also holds what each layer was built with
 * and what draws it; a preset holds names, visibilities and opacities alone.
 *
 * Thread: caller locks. The state of a running pipeline item belongs to the pipeline's thread, any other to the main
 * thread.
 */
class TORVDisplayState final
{
public:
    using Ptr = boost::shared_ptr<TORVDisplayState>;
    using CPtr = boost::shared_ptr<const TORVDisplayState>;

    TORVDisplayState();

    /// The name is not used: the state is called "Default" until it is told otherwise.
    explicit TORVDisplayState(QString const& name);

    TORVDisplayState(const TORVDisplayState&) = delete;
    TORVDisplayState& operator=(const TORVDisplayState&) = delete;

    /// Name "Default", both groups new: all layers on, opaque, open.
    void constructDefaultState();

    const QString& getName() const { return _name; }
    void setName(const QString& name) { _name = name; }
    const QVector<TORVDisplayGroup::Ptr>& getMembers() const { return _members; }

    /// Null where no group has the key.
    TORVDisplayGroup::Ptr getGroup(int key) const;

    /// A group or a layer; null for an unknown key.
    TORVDisplayLayer::Ptr getLayer(int key) const;

    /// Takes over what the user chose and leaves parameters and elements alone: applying a preset rebuilds nothing.
    void copyState(const TORVDisplayState& other);

    /// Always true, and adds no reason: what must be built anew is decided by the parameters of the layers. A state of
    /// another shape stops the process.
    bool hasChanged(const TORVDisplayState& prevState, QStringList* reasons) const;

    /// Parameters of all layers away, their elements invalid: the next update builds everything.
    void resetParameters();

    /// Of the 2-D product's layer; its group plays no part.
    bool has2DEnabled() const;

    /// At debug level.
    void printDisplayState() const;

private:
    QString _name;
    QVector<TORVDisplayGroup::Ptr> _members;
};
