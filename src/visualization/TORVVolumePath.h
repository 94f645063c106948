#pragma once

class vtkRenderWindow;

/**
 * Which way volumes are drawn on this machine: by the graphics card, or by casting rays on the processor where OpenGL
 * itself runs on the processor. There the card's way works, and takes three times as long (Mesa's llvmpipe).
 *
 * Thread: `detect` on the main thread, `isSoftware` and `setSoftware` on any.
 */
class TORVVolumePath final
{
public:
    TORVVolumePath() = delete;

    /// Asks the window's context, which has to be there, and says in the log what it found.
    static void detect(vtkRenderWindow* window);

    /// Until somebody knows better it is true, which draws on every machine.
    static bool isSoftware();
    static void setSoftware(bool software);

    /// Whether a description of an OpenGL renderer ("llvmpipe (LLVM 15.0.6, 256 bits)") is that of a processor.
    static bool isSoftwareRenderer(const char* description);
};
