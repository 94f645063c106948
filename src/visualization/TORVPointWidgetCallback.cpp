#include "visualization/TORVPointWidgetCallback.h"

#include "visualization/TORVPointWidget.h"

#include <vtkObjectFactory.h>

TORVPointWidgetCallback* TORVPointWidgetCallback::New()
{
    VTK_STANDARD_NEW_BODY(TORVPointWidgetCallback);
}

void TORVPointWidgetCallback::Execute(vtkObject* caller, unsigned long, void*)
{
    auto* const widget = TORVPointWidget::SafeDownCast(caller);
    if (widget) {
        widget->update();
    }
}
