#pragma once

#include "visualization/TORVVisualizationParameters.h"
#include "visualization/TORVVisualizationPipeline.h"

#include <QObject>

#include <boost/shared_ptr.hpp>

#include <vtkNew.h>
#include <vtkTimerLog.h>

class TORVVisualizationObserver;

/**
 * One scene that is made, or has been made, of one data frame: decides whether a request needs work, tells every layer
 * its parameters, has the pipeline build, places the layers and tells the observer.
 *
 * What is wanted may change at any time, the item only while the pipeline doesn't have it. So a request during a run is
 * remembered and carried out when the run ends; however many came, one run follows, and one `visualizationFinished`.
 *
 * | state             | updateVisualization    | run ends                     | abort   | resetVisualization |
 * |-------------------|------------------------|------------------------------|---------|--------------------|
 * | idle              | item sent: generating  | -                            | aborted | idle, empty        |
 * | generating        | generating, dirty      | idle, observer told          | aborted | idle, empty (1)    |
 * | generating, dirty | generating, dirty      | item sent again: generating  | aborted | idle, empty (1)    |
 * | aborted           | nothing                | nothing                      | -       | aborted, empty     |
 *
 * (1) What the pipeline still brings back is let go without a word.
 *
 * A second run is forced, which builds every layer anew, only if parameters had changed when it was asked for.
 *
 * Thread: main thread; the pipeline's thread never sees this object.
 */
class TORVVisualization final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVVisualization)

public:
    using Ptr = boost::shared_ptr<TORVVisualization>;
    using ItemPtr = TORVVisualizationPipelineItem::Ptr;

    /// @param observer not null; outlives this object
    explicit TORVVisualization(TORVVisualizationObserver* observer);
    ~TORVVisualization() override;

    /// The frame to show, which must have a volume file. The item of the same frame is used again unless it is busy.
    void setSourceData(const boost::shared_ptr<const TORVDataFrame>& dataFrame);

    /// Needs a frame.
    void setParameters(const boost::shared_ptr<const TORVGeneralSettings>& genSettings,
                       const boost::shared_ptr<const TORVProductSettings>& prodSettings);

    /// Builds what has changed, and takes over what the user wants to see; `force` builds all layers anew.
    void updateVisualization(bool force);

    /// Has the finished scene take the colours of the present display mode; one that is being built does so when it is
    /// finished. Nothing is built anew.
    void restyle();

    /// Ends all work, waiting for the step that runs. Final.
    void abort();

    /// Lets go of data, item and result, and of their memory. With a frame it may be used again.
    void resetVisualization();

    /// Has every layer built anew by the next update. Not while the item is busy.
    void resetLayers();

    /// The finished image of the product on show; null where there is none, or while it is being built.
    vtkDataSet* getVTKDataSet() const;

    const boost::shared_ptr<const TORVDataFrame>& getDataFrame() const { return _params._dataFrame; }

    /// The scene that was finished last; null before the first.
    const ItemPtr& getResultItem() const { return _visualizationResult; }

    /// Main memory of the data of that scene; 0 before the first.
    qint64 getMemoryBytes() const { return _memoryBytes; }

    bool isGenerating() const { return _generating; }
    double getVerticalScale() const { return _appliedParams._verticalScale; }

private Q_SLOTS:
    void onPipelineFinished();

private:
    void createItem(const boost::shared_ptr<const TORVDataFrame>& dataFrame);
    void remember(bool force);
    bool hasParametersChanged() const;
    void sendItem();
    void updateLayers(bool force);
    void updateRadarLayers(const TORVDisplayState& state);
    void updateGeoLayers(const TORVDisplayState& state);
    void finish(const ItemPtr& item);
    void updateLayerTranformations(const TORVVisualizationPipelineItem& item) const;

    TORVVisualizationObserver* _observer;
    boost::shared_ptr<TORVVisualizationPipeline> _pipeline;
    vtkNew<vtkTimerLog> _timer;
    bool _generating = false;
    bool _dirty = false;
    bool _dirtyForced = false; // the run that `_dirty` asks for is a forced one
    bool _aborted = false;
    TORVVisualizationParameters _params;        // what is wanted
    TORVVisualizationParameters _appliedParams; // what the layers were last given
    ItemPtr _pipelineItem;                      // that is being prepared or run
    bool _isItemNew = false;                    // it has no parameters yet
    ItemPtr _sentItem;                          // that the pipeline has, null when idle
    ItemPtr _visualizationResult;
    qint64 _memoryBytes = 0; // of the result when it was finished
    int _styleCount = 0;     // of the display mode that the result was last styled for
};
