#pragma once

class TORVPointWidget;
struct TORVPoint3D;

/**
 * Who wants to know where the 3-D cursor is.
 *
 * Thread: main thread.
 */
class TORVPointWidgetObserver
{
public:
    virtual ~TORVPointWidgetObserver() = default;

    /// @param point  in the scene, metres; z as tall as the scene shows it
    virtual void pointWidgetUpdated(TORVPointWidget* widget, const TORVPoint3D& point) = 0;
};
