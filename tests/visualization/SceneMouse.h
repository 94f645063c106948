#pragma once

#include <vtkCallbackCommand.h>
#include <vtkGenericRenderWindowInteractor.h>
#include <vtkNew.h>
#include <vtkRenderWindow.h>

#include <map>

/**
 * A mouse over a window that nobody sees: what it does reaches the window's interactor as if a user had done it. What
 * the widgets leave over arrives at the interactor's lowest priority, as at the style that moves the camera, and is
 * counted.
 *
 * Positions are pixels from the lower left corner. Thread: main thread.
 */
class SceneMouse final
{
public:
    explicit SceneMouse(vtkRenderWindow* window)
    {
        _interactor->SetRenderWindow(window);
        _interactor->SetInteractorStyle(nullptr);
        _interactor->Initialize();
        _counter->SetClientData(this);
        _counter->SetCallback([](vtkObject*, unsigned long event, void* self, void*) {
            ++static_cast<SceneMouse*>(self)->_passed[event];
        });
        for (const unsigned long event :
             {vtkCommand::LeftButtonPressEvent, vtkCommand::LeftButtonReleaseEvent, vtkCommand::MiddleButtonPressEvent,
              vtkCommand::MiddleButtonReleaseEvent, vtkCommand::RightButtonPressEvent,
              vtkCommand::RightButtonReleaseEvent, vtkCommand::MouseMoveEvent}) {
            _interactor->AddObserver(event, _counter, 0.0F);
        }
    }

    SceneMouse(const SceneMouse&) = delete;
    SceneMouse& operator=(const SceneMouse&) = delete;
    vtkRenderWindowInteractor* interactor() const { return _interactor; }

    void move(int x, int y, bool shift = false) { send(vtkCommand::MouseMoveEvent, x, y, shift); }
    void press(int x, int y, bool shift = false) { send(vtkCommand::LeftButtonPressEvent, x, y, shift); }
    void release(int x, int y) { send(vtkCommand::LeftButtonReleaseEvent, x, y, false); }

    void send(unsigned long event, int x, int y, bool shift = false)
    {
        _interactor->SetEventInformation(x, y, 0, shift ? 1 : 0);
        _interactor->InvokeEvent(event, nullptr);
    }

    void drag(int fromX, int fromY, int toX, int toY)
    {
        press(fromX, fromY);
        move(toX, toY);
        release(toX, toY);
    }

    /// How many such events no widget has kept for itself.
    int passed(unsigned long event) const
    {
        const auto count = _passed.find(event);
        return count == _passed.end() ? 0 : count->second;
    }

private:
    vtkNew<vtkGenericRenderWindowInteractor> _interactor;
    vtkNew<vtkCallbackCommand> _counter;
    std::map<unsigned long, int> _passed;
};
