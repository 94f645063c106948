#pragma once

class TORVCameraInteractor;

/**
 * Who wants to know where the camera is.
 *
 * Thread: main thread.
 */
class TORVCameraInteractorObserver
{
public:
    virtual ~TORVCameraInteractorObserver() = default;

    /// The camera has a new home, or has gone back to it.
    virtual void cameraReset(TORVCameraInteractor* camera) = 0;

    /// The user has moved the camera.
    virtual void cameraMoved(TORVCameraInteractor* camera) = 0;
};
