#pragma once

#include <QObject>
#include <QTimer>

class vtkRenderWindow;
class vtkRenderer;
class vtkViewport;

/**
 * When a window is drawn, and how well.
 *
 * However often a picture is asked for, one is drawn in a turn of the event loop, so that what the mouse has done while
 * a picture was being drawn ends up in the next one and nothing queues.
 *
 * | state  | picture                                                       | left by                                |
 * |--------|---------------------------------------------------------------|----------------------------------------|
 * | rest   | whole: translucent surfaces sorted, volumes fine, edges clean | `moved`                                |
 * | moving | quick: as well as a steady rate allows                        | no motion for `RestDelay_ms`, `drawNow` |
 *
 * Thread: main thread only.
 * Ownership: window and renderer outlive this object.
 */
class TORVFramePacer final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(TORVFramePacer)

public:
    /// From the end of the last quick picture to the whole one.
    static constexpr int RestDelay_ms = 100;

    /// Layers of translucent surfaces that are sorted in a picture at rest, and in one that is kept.
    static constexpr int PeelsAtRest = 8;
    static constexpr int PeelsForKeeps = 16;

    TORVFramePacer(vtkRenderWindow* window, vtkRenderer* renderer);
    ~TORVFramePacer() override;

    /// A picture at the end of this turn of the event loop.
    void request();

    /// What is seen is on the move.
    void moved();

    /// Until it is told otherwise all pictures are quick ones: what is shown changes faster than whole ones are drawn.
    void keepMoving(bool on);

    /// A whole picture for keeps, before this returns.
    void drawNow();

    bool isMoving() const { return _isMoving; }

    /// Whether the picture that is being drawn there is a quick one, for what draws itself differently then.
    static bool isQuick(vtkViewport* viewport);

    /// Pictures so far.
    int getDrawCount() const { return _drawCount; }

private:
    void setMoving(bool moving);
    void comeToRest();
    void draw();

    vtkRenderWindow* _window;
    vtkRenderer* _renderer;
    QTimer _drawTimer;
    QTimer _restTimer;
    bool _isKeptMoving = false;
    bool _isMoving = true; // so that the constructor sets what rest means
    int _drawCount = 0;
};
