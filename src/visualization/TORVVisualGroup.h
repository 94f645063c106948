#pragma once

#include "visualization/TORVVisualElement.h"

#include <boost/shared_ptr.hpp>

#include <vector>

class TORVLayerParameters;

/**
 * The elements of one display group.
 *
 * Thread: as its elements: built on the main thread, updated on the thread of the pipeline that owns it.
 */
class TORVVisualGroup
{
public:
    using Ptr = boost::shared_ptr<TORVVisualGroup>;

    /// A group without elements. `id` is the key of the display group.
    static Ptr makeGroup(int id);

    explicit TORVVisualGroup(int id);
    virtual ~TORVVisualGroup();
    TORVVisualGroup(const TORVVisualGroup&) = delete;
    TORVVisualGroup& operator=(const TORVVisualGroup&) = delete;

    /// Takes the parameters; without any, all elements become empty. The elements are updated one by one by the owner.
    virtual void update(boost::shared_ptr<const TORVLayerParameters> params, bool visible);

    /// Empties the elements, which stay.
    virtual void invalidate();

    int getId() const { return _id; }
    const std::vector<TORVVisualElement::Ptr>& getElements() const { return _elements; }
    void addElement(const TORVVisualElement::Ptr& element) { _elements.push_back(element); }

    /// Null before the first update and after `invalidate`.
    const boost::shared_ptr<const TORVLayerParameters>& getParameters() const { return _params; }

private:
    int _id;
    std::vector<TORVVisualElement::Ptr> _elements;
    boost::shared_ptr<const TORVLayerParameters> _params;
};
