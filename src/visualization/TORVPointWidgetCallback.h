#pragma once

#include <vtkCommand.h>

/**
 * Takes over where the user has dragged the 3-D cursor.
 *
 * Thread: main thread only.
 */
class TORVPointWidgetCallback final : public vtkCommand
{
public:
    static TORVPointWidgetCallback* New();
    // clang-format off
    vtkTypeMacro(TORVPointWidgetCallback, vtkCommand)
        // clang-format on

        /// Nothing happens for a caller that is no `TORVPointWidget`.
        void Execute(vtkObject* caller, unsigned long event, void* data) override;
};
