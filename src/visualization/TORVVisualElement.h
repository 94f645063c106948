#pragma once

#include <vtkProp.h>
#include <vtkSmartPointer.h>

#include <boost/shared_ptr.hpp>

#include <atomic>

class TORVLayerParameters;
class TORVVisualGroup;

/**
 * What draws one layer: turns the parameters of the layer into a prop.
 *
 * Thread: `update` and `invalidate` on the thread of the pipeline that owns the element. The rest on the main thread,
 * only while that pipeline does not work on the element.
 */
class TORVVisualElement
{
public:
    using Ptr = boost::shared_ptr<TORVVisualElement>;

    /// The element that draws the layer with that key. A key of no layer stops the process.
    static Ptr makeElement(TORVVisualGroup* parent, int id);

    /// @param parent outlives the element
    TORVVisualElement(TORVVisualGroup* parent, int id);
    virtual ~TORVVisualElement();
    TORVVisualElement(const TORVVisualElement&) = delete;
    TORVVisualElement& operator=(const TORVVisualElement&) = delete;

    /// What is drawn; null while the element is empty or holds data alone.
    virtual vtkSmartPointer<vtkProp> getProp();

    /**
     * Rebuilds what differs from the last update, and nothing else.
     * @param params   null, or of a class that isn't this element's: the element becomes empty
     * @param visible  whether the layer is on; an element may hold back costly work while it isn't
     * @param abort    set by another thread when nobody wants the result any more
     */
    virtual void update(boost::shared_ptr<const TORVLayerParameters> params, bool visible,
                        const std::atomic<bool>& abort) = 0;

    /// Back to empty. A second call does nothing.
    virtual void invalidate();

    /// Moves what the screen has shown during the run to where the run has put it. Main thread, after each run.
    virtual void place();

    /// Takes the colours of the present display mode, in place; nothing is built. Main thread, while the pipeline does
    /// not work on the element.
    virtual void restyle();

    int getId() const { return _id; }

    TORVVisualGroup* getParentGroup() const { return _parentGroup; } ///< not null

private:
    TORVVisualGroup* _parentGroup;
    int _id;
};
