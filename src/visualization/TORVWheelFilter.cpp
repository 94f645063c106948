#include "visualization/TORVWheelFilter.h"

#include "visualization/TORVCameraInteractor.h"

#include <QWheelEvent>

TORVWheelFilter::TORVWheelFilter(TORVCameraInteractor* camera, QObject* parent) : QObject(parent), _camera(camera) {}

TORVWheelFilter::~TORVWheelFilter() = default;

bool TORVWheelFilter::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::Wheel) {
        return QObject::eventFilter(watched, event);
    }
    const int angle = static_cast<QWheelEvent*>(event)->angleDelta().y();
    if (angle != 0) {
        _camera->wheel(static_cast<double>(angle) / QWheelEvent::DefaultDeltasPerStep);
    }
    event->accept();
    return true;
}
