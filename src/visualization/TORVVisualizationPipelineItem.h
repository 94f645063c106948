#pragma once

#include "settings/TORVDisplayState.h"
#include "utils/TORVPoint3D.h"
#include "visualization/TORVVisualGroup.h"

#include <QString>

#include <boost/shared_ptr.hpp>

#include <vtkPropAssembly.h>
#include <vtkSmartPointer.h>

#include <atomic>
#include <vector>

class vtkDataSet;

/**
 * One unit of the pipeline's work and, when it is finished, one whole scene: a display state of its own, the elements
 * that were made for it, and the assembly of what they draw. It keeps its VTK objects from run to run, so that a layer
 * that hasn't changed costs nothing.
 *
 * Thread: while `isBusy` the item belongs to the pipeline's thread, with all that hangs on it; else to the main thread.
 * What the main thread sets and the pipeline never looks at - site, radar position - is the main thread's always.
 * What a run replaces has been drawn in a window of the main thread and may only be destroyed there: the item collects
 * it until `releaseReplaced`.
 */
class TORVVisualizationPipelineItem
{
public:
    using Ptr = boost::shared_ptr<TORVVisualizationPipelineItem>;

    /// Takes over what the user chose in `state`, which is not kept.
    explicit TORVVisualizationPipelineItem(const TORVDisplayState::CPtr& state);
    virtual ~TORVVisualizationPipelineItem();
    TORVVisualizationPipelineItem(const TORVVisualizationPipelineItem&) = delete;
    TORVVisualizationPipelineItem& operator=(const TORVVisualizationPipelineItem&) = delete;

    /// Brings all elements up to their layers' parameters; returns soon after `abort` is set. Pipeline's thread.
    void update(const std::atomic<bool>& abort);

    /// Hands each element to its layer and makes a new assembly of what the visible layers draw. Pipeline's thread.
    void readResults();

    /// Null before the first run.
    const vtkSmartPointer<vtkPropAssembly>& getResults() const { return _results; }

    /// The product's finished image; null while the item is busy and where there is none.
    vtkDataSet* getVTKDataSet() const;

    /// Main memory of the data that all elements draw or hold, whether they are seen or not. Main thread, while the
    /// item isn't busy.
    qint64 countMemoryBytes();

    /// Takes the elements from an item of another frame that isn't busy, so that only layers that differ are built.
    /// Their props stay in the other one's assembly. Main thread, before the first run.
    void takeOver(TORVVisualizationPipelineItem& other);

    /// Has what moves by itself go to its new place. Main thread, after a run.
    void place();

    /// Has all that is drawn take the colours of the present display mode. Main thread, while the item isn't busy.
    void restyle();

    /// Destroys what the last run replaced. Main thread, while the item isn't busy.
    void releaseReplaced();

    bool isBusy() const { return _busy; }
    void setBusy(bool busy) { _busy = busy; }
    const TORVDisplayState::Ptr& getDisplayState() const { return _displayState; }

    /// Empty where there is no product.
    const QString& getSite() const { return _site; }
    void setSite(const QString& site) { _site = site; }

    /// In the scene, metres; z as tall as the scene shows it.
    const TORVPoint3D& getRadarPosition() const { return _radarPosition; }
    void setRadarPosition(const TORVPoint3D& position) { _radarPosition = position; }

    /// Place of a layer in the order of drawing, the first first.
    static int drawingOrderOf(int key);

private:
    void create();
    void updateElement(TORVVisualElement& element, const std::atomic<bool>& abort);
    void keepReplaced();
    template <class Work>
    void forEachElement(Work work);

    TORVDisplayState::Ptr _displayState;
    std::vector<TORVVisualGroup::Ptr> _groups;
    vtkSmartPointer<vtkPropAssembly> _results;
    QString _site;
    TORVPoint3D _radarPosition = {0.0, 0.0, 0.0};
    std::atomic<bool> _busy{false};
    std::vector<vtkSmartPointer<vtkProp>> _replaced;
};
