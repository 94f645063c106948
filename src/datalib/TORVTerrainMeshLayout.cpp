#include "datalib/TORVTerrainMeshLayout.h"

#include "datalib/TORVTerrainCache.h"

#include <QList>
#include <QtEndian>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int PointCount = TORVTerrainCache::MeshSide * TORVTerrainCache::MeshSide;
constexpr int MaxLineLength = 128;

// Each of the 2 x 60 x 60 triangles as a strip of its own would need no more.
constexpr int64_t MaxStripNumbers = int64_t(3) * 2 * PointCount;

int64_t int64At(const char* numbers, int64_t index)
{
    return qFromBigEndian<qint64>(numbers + index * int64_t(sizeof(int64_t)));
}

bool areOffsets(const char* offsets, int64_t count, int64_t total)
{
    int64_t last = 0;
    for (int64_t i = 0; i < count; ++i) {
        const int64_t offset = int64At(offsets, i);
        const bool isStart = i == 0 && offset == 0;
        const bool isEnd = i > 0 && offset <= total && offset >= last + 3; // a triangle has three points
        if (!isStart && !isEnd) {
            return false;
        }
        last = offset;
    }
    return last == total;
}

bool arePoints(const char* numbers, int64_t count)
{
    for (int64_t i = 0; i < count; ++i) {
        const int64_t point = int64At(numbers, i);
        if (point < 0 || point >= PointCount) {
            return false;
        }
    }
    return true;
}

} // namespace

bool TORVTerrainMeshLayout::isExpected()
{
    const QByteArray count = QByteArray::number(PointCount);
    return line("BINARY") && line("DATASET POLYDATA") && line("POINTS " + count + " float") && floats(3 * PointCount) &&
           strips() && line("POINT_DATA " + count) && namedLine("NORMALS ", " float") && floats(3 * PointCount) &&
           namedLine("TEXTURE_COORDINATES ", " 2 float") && floats(2 * PointCount) && _at == _body.size();
}

QByteArray TORVTerrainMeshLayout::nextLine()
{
    const QByteArray ahead = QByteArray::fromRawData(
        _body.constData() + _at, static_cast<int>(std::min<int64_t>(_body.size() - _at, MaxLineLength)));
    const int length = ahead.indexOf('\n');
    if (length < 0) {
        return {};
    }
    _at += length + 1;
    return {ahead.constData(), length};
}

bool TORVTerrainMeshLayout::line(const char* expected)
{
    return nextLine() == expected;
}

bool TORVTerrainMeshLayout::namedLine(const char* before, const char* behind)
{
    const QByteArray found = nextLine();
    const int nameLength = found.size() - static_cast<int>(qstrlen(before) + qstrlen(behind));
    return nameLength > 0 && found.startsWith(before) && found.endsWith(behind) &&
           !found.mid(static_cast<int>(qstrlen(before)), nameLength).contains(' ');
}

// The block of numbers here, or null if the file ends before it or doesn't go on as it should.
const char* TORVTerrainMeshLayout::numbers(int64_t count, int64_t size)
{
    const int64_t end = _at + count * size;
    if (end >= _body.size() || _body[static_cast<int>(end)] != '\n') {
        return nullptr;
    }
    const char* const start = _body.constData() + _at;
    _at = end + 1;
    return start;
}

bool TORVTerrainMeshLayout::floats(int count)
{
    const char* const start = numbers(count, sizeof(float));
    if (start == nullptr) {
        return false;
    }
    for (int i = 0; i < count; ++i) {
        if (!std::isfinite(qFromBigEndian<float>(start + i * sizeof(float)))) {
            return false;
        }
    }
    return true;
}

bool TORVTerrainMeshLayout::strips()
{
    const QList<QByteArray> words = nextLine().split(' ');
    if (words.size() != 3 || words[0] != "TRIANGLE_STRIPS") {
        return false;
    }
    bool isNumber[2] = {};
    const int64_t offsetCount = words[1].toLongLong(&isNumber[0]);
    const int64_t pointCount = words[2].toLongLong(&isNumber[1]);
    if (!isNumber[0] || !isNumber[1] || offsetCount < 2 || offsetCount > MaxStripNumbers || pointCount < 3 ||
        pointCount > MaxStripNumbers || !line("OFFSETS vtktypeint64")) {
        return false;
    }
    const char* const offsets = numbers(offsetCount, sizeof(int64_t));
    if (offsets == nullptr || !areOffsets(offsets, offsetCount, pointCount) || !line("CONNECTIVITY vtktypeint64")) {
        return false;
    }
    const char* const points = numbers(pointCount, sizeof(int64_t));
    return points != nullptr && arePoints(points, pointCount);
}
