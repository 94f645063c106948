#pragma once

#include <QObject>

#include <vtkSmartPointer.h>

class TORVCameraInteractor;

/**
 * Hands the wheel of a widget to a camera: parts of a step from touchpads and fine wheels at once, and all the steps of
 * an event that stands for many. VTK on its own collects parts until they make a step, and makes one step of many.
 *
 * Install it on the widget of the scene with `installEventFilter`. Wheel events go no further. Sideways ones do
 * nothing.
 *
 * Thread: main thread only.
 * Ownership: holds the camera.
 */
class TORVWheelFilter final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVWheelFilter)

public:
    explicit TORVWheelFilter(TORVCameraInteractor* camera, QObject* parent = nullptr);
    ~TORVWheelFilter() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    vtkSmartPointer<TORVCameraInteractor> _camera;
};
