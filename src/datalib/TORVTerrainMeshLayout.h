#pragma once

#include <QByteArray>

#include <cstdint>

/**
 * Walks the body of a mesh file, all that follows its title, and tells whether it is laid out as VTK's writer lays out
 * a block of ground:
 *
 *     BINARY
 *     DATASET POLYDATA
 *     POINTS 3721 float                          x, y, z of each point
 *     TRIANGLE_STRIPS m n
 *     OFFSETS vtktypeint64                       m places in the list that follows, the last one its end
 *     CONNECTIVITY vtktypeint64                  n numbers of points
 *     POINT_DATA 3721
 *     NORMALS name float
 *     TEXTURE_COORDINATES name 2 float
 *
 * each line closed by a line feed, each block of numbers big-endian and followed by one.
 *
 * Thread: a plain value, any thread.
 */
class TORVTerrainMeshLayout final
{
public:
    explicit TORVTerrainMeshLayout(const QByteArray& body) : _body(body) {}

    /// Every count fits the file, every point number is one of a point, every float is finite, and nothing follows.
    bool isExpected();

private:
    bool line(const char* expected);
    bool namedLine(const char* before, const char* behind);
    bool floats(int count);
    bool strips();
    const char* numbers(int64_t count, int64_t size);
    QByteArray nextLine();

    const QByteArray _body;
    int64_t _at = 0;
};
