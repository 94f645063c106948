#pragma once

#include <vector>

/**
 * What names have taken of a picture while it is drawn, so that none is written over another.
 *
 * Thread: main thread only.
 */
class TORVLabelRoom final
{
public:
    /// Pixels.
    struct Box
    {
        double left;
        double right;
        double bottom;
        double top;
    };

    /// For a new picture.
    void clear() { _taken.clear(); }

    /// Takes the box unless some of it is taken already. @return whether it did
    bool take(const Box& box)
    {
        for (const Box& other : _taken) {
            if (box.left < other.right && other.left < box.right && box.bottom < other.top && other.bottom < box.top) {
                return false;
            }
        }
        _taken.push_back(box);
        return true;
    }

private:
    std::vector<Box> _taken;
};
