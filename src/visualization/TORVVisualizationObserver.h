#pragma once

#include <boost/shared_ptr.hpp>

class TORVDisplayState;
class TORVGeneralSettings;
class TORVVisualization;

/**
 * Whoever shows visualizations.
 *
 * Thread: all on the main thread.
 */
class TORVVisualizationObserver
{
public:
    virtual ~TORVVisualizationObserver();

    /// The scene that was asked for is there, or as much of it as could be had. The receiver may let go of the
    /// visualization only after this has returned.
    virtual void visualizationFinished(TORVVisualization* visualization) = 0;

    virtual boost::shared_ptr<const TORVGeneralSettings> getVisualizationGeneralSettings() = 0;
    virtual boost::shared_ptr<const TORVDisplayState> getVisualizationDisplayState() = 0;
};
