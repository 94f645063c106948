// The originals: what their headers say, and their heights brought to one grid.
#include "datalib/TORVTerrainFile.h"

#include "utils/TORVLog.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <optional>

namespace
{

// As the layout has it, and as some writers leave it with one byte behind the last checksum.
constexpr qint64 DtedSize = 2902642;
constexpr qint64 DtedPaddedSize = 2902643;
constexpr int DtedPoints = 1201;
constexpr int DtedUhlSize = 80;
constexpr int DtedDsiSize = 648;
constexpr double TenthsPerDegree = 36000.0; // tenths of arc seconds

// In words of two bytes: where the first height of all stands, and what a record holds beside its heights.
constexpr int DtedFirstHeight = 1718;
constexpr int DtedRecordRest = 6;

constexpr int CoarseFactor = 2;
constexpr int FineFactor = 6;
constexpr qint64 ReadStep = qint64(1024) * 1024;

constexpr int Void = -1;

struct SrtmKind
{
    qint64 size;
    int points;
    TORVTerrainFile::Type type;
};

constexpr std::array<SrtmKind, 2> SrtmKinds = {
    {{2884802, 1201, TORVTerrainFile::SRTM3}, {25934402, 3601, TORVTerrainFile::SRTM1}}};

std::optional<int> number(const QByteArray& text, int at, int length)
{
    int value = 0;
    for (int i = at; i < at + length; ++i) {
        if (text[i] < '0' || text[i] > '9') {
            return std::nullopt;
        }
        value = 10 * value + (text[i] - '0');
    }
    return value;
}

// Three digits of degrees, two of minutes, two of seconds, a hemisphere.
std::optional<double> angle(const QByteArray& text, int at, const QByteArray& hemispheres)
{
    const std::optional<int> degrees = number(text, at, 3);
    const std::optional<int> minutes = number(text, at + 3, 2);
    const std::optional<int> seconds = number(text, at + 5, 2);
    const int hemisphere = hemispheres.indexOf(text.mid(at + 7, 1).toUpper());
    if (!degrees || !minutes || !seconds || hemisphere < 0) {
        return std::nullopt;
    }
    const double value = *degrees + *minutes / 60.0 + *seconds / 3600.0;
    return hemisphere == 0 ? value : -value;
}

bool isCorner(double latitude, double longitude)
{
    return latitude >= -90.0 && latitude <= 89.0 && longitude >= -180.0 && longitude <= 180.0;
}

// 180 and -180 are one meridian; squares east of it begin at -180.
double westOfDateLine(double longitude)
{
    return longitude == 180.0 ? -180.0 : longitude;
}

// Heights in metres; nothing below the sea, by the rule of all that follows.
int heightOf(unsigned int word)
{
    return (word & 0x8000U) != 0 ? 0 : static_cast<int>(word);
}

unsigned int wordAt(const unsigned char* bytes, std::size_t index)
{
    return static_cast<unsigned int>(bytes[2 * index]) << 8U | bytes[2 * index + 1];
}

class DtedHeights
{
public:
    explicit DtedHeights(const std::vector<unsigned char>& bytes) : _bytes(bytes.data()) {}

    int operator()(int column, int row) const
    {
        const unsigned int word = wordAt(_bytes, static_cast<std::size_t>(column) * (DtedPoints + DtedRecordRest) +
                                                     DtedFirstHeight + static_cast<std::size_t>(DtedPoints - 1 - row));
        return word == 0x8000U || word == 0xFFFFU ? Void : heightOf(word);
    }

private:
    const unsigned char* _bytes;
};

class SrtmHeights
{
public:
    SrtmHeights(const std::vector<unsigned char>& bytes, int points) : _bytes(bytes.data()), _points(points) {}

    int operator()(int column, int row) const
    {
        const unsigned int word = wordAt(_bytes, static_cast<std::size_t>(row) * _points + column);
        return word == 0x8000U ? Void : heightOf(word);
    }

private:
    const unsigned char* _bytes;
    int _points;
};

struct Span
{
    int begin;
    int end;
};

// The cells at either edge are one point wide, so that neighbouring blocks have their edge in common.
Span sourceSpan(int cell, int cellCount, int factor, int pointCount)
{
    const int begin = cell * factor;
    const int width = cell == 0 || cell == cellCount - 1 ? 1 : factor;
    return {begin, std::min(begin + width, pointCount)};
}

struct Sum
{
    int sum = 0;
    int count = 0;
    int smallest = 32767;
};

template <typename Heights>
Sum sumOf(const Heights& heights, const Span& columns, const Span& rows)
{
    Sum sum;
    for (int row = rows.begin; row < rows.end; ++row) {
        for (int column = columns.begin; column < columns.end; ++column) {
            const int height = heights(column, row);
            if (height != Void) {
                sum.sum += height;
                ++sum.count;
                sum.smallest = std::min(sum.smallest, height);
            }
        }
    }
    return sum;
}

// What a cell without a known height repeats where its row begins.
enum class RowStart
{
    LAST_CELL,      // of the row before
    SMALLEST_HEIGHT // of all that were met
};

template <typename Heights>
bool resample(const Heights& heights, int points, int factor, RowStart rowStart, std::vector<double>& grid, int side,
              const std::atomic<bool>& abort)
{
    double last = 0.0;
    int smallest = 32767;
    std::size_t at = 0;
    for (int y = 0; y < side; ++y) {
        if (abort) {
            return false;
        }
        if (rowStart == RowStart::SMALLEST_HEIGHT) {
            last = smallest == 32767 ? 0.0 : smallest;
        }
        const Span rows = sourceSpan(y, side, factor, points);
        for (int x = 0; x < side; ++x) {
            const Sum sum = sumOf(heights, sourceSpan(x, side, factor, points), rows);
            smallest = std::min(smallest, sum.smallest);
            if (sum.count > 0) {
                last = static_cast<double>(sum.sum) / sum.count;
            }
            grid[at++] = last;
        }
    }
    return true;
}

} // namespace

bool TORVTerrainFile::fail(const char* reason, const char* failed)
{
    log(&TORVLog::logDebug, QLatin1String(reason) + _path);
    log(&TORVLog::logDebug, QLatin1String(failed));
    return false;
}

bool TORVTerrainFile::loadHeadersDTED1()
{
    static const char* const failed = "TORVTerrainFile::loadHeadersDTED1(): FAILED!";
    const QFileInfo info(_path);
    if (!info.isFile()) {
        return fail("TORVTerrainFile::loadHeadersDTED1(): file not available: ", failed);
    }
    if (info.size() != DtedSize && info.size() != DtedPaddedSize) {
        return fail("TORVTerrainFile::loadHeadersDTED1(): file not correct size: ", failed);
    }
    QFile file(_path);
    if (!file.open(QIODevice::ReadOnly)) {
        return fail("TORVTerrainFile::loadHeadersDTED1(): file not available: ", failed);
    }
    const QByteArray uhl = file.read(DtedUhlSize);
    if (uhl.size() != DtedUhlSize) {
        return fail("TORVTerrainFile::loadHeadersDTED1(): Reading DTED1 UHL header failed: ", failed);
    }
    const QByteArray dsi = file.read(DtedDsiSize);
    if (dsi.size() != DtedDsiSize) {
        return fail("TORVTerrainFile::loadHeadersDTED1(): Readinng DTED1 DSI header failed: ", failed);
    }
    if (!uhl.startsWith("UHL") || !dsi.startsWith("DSI")) {
        return fail("TORVTerrainFile::loadHeadersDTED1(): DTED1 file headers not recognized: ", failed);
    }
    _type = DTED1;
    return takeHeadersDTED1(uhl) ||
           fail("TORVTerrainFile::loadHeadersDTED1(): DTED1 file headers not recognized: ", failed);
}

// The size of the file leaves no choice of the numbers of points; a header that names others is not believed.
bool TORVTerrainFile::takeHeadersDTED1(const QByteArray& uhl)
{
    const std::optional<double> longitude = angle(uhl, 4, "EW");
    const std::optional<double> latitude = angle(uhl, 12, "NS");
    const std::optional<int> longitudeStep = number(uhl, 20, 4);
    const std::optional<int> latitudeStep = number(uhl, 24, 4);
    const std::optional<int> longitudePoints = number(uhl, 47, 4);
    const std::optional<int> latitudePoints = number(uhl, 51, 4);
    if (!longitude || !latitude || !longitudeStep || !latitudeStep || longitudePoints != DtedPoints ||
        latitudePoints != DtedPoints || !isCorner(*latitude, *longitude)) {
        return false;
    }
    _latitude = *latitude;
    _longitude = westOfDateLine(*longitude);
    _longitudeStep = *longitudeStep / TenthsPerDegree;
    _latitudeStep = *latitudeStep / TenthsPerDegree;
    _longitudePoints = *longitudePoints;
    _latitudePoints = *latitudePoints;
    return true;
}

bool TORVTerrainFile::loadHeadersSRTM()
{
    static const char* const failed = "TORVTerrainFile::loadHeadersSRTM(): FAILED!";
    const QFileInfo info(_path);
    if (!info.isFile() || !info.isReadable()) {
        return fail("TORVTerrainFile::loadHeadersSRTM(): file not available: ", failed);
    }
    const auto kind = std::find_if(SrtmKinds.begin(), SrtmKinds.end(),
                                   [&info](const SrtmKind& each) { return each.size == info.size(); });
    if (kind == SrtmKinds.end()) {
        return fail("TORVTerrainFile::loadHeadersSRTM(): file not correct size: ", failed);
    }
    _type = kind->type;
    _latitudePoints = _longitudePoints = kind->points;
    _latitudeStep = _longitudeStep = 1.0 / (kind->points - 1);
    return takeLocationSRTM() ||
           fail("TORVTerrainFile::loadHeadersSRTM(): Parsing location from filename failed: ", failed);
}

bool TORVTerrainFile::takeLocationSRTM()
{
    static const QRegularExpression pattern(QStringLiteral("^([NS])\\s*([+-]?\\d{1,4})([EW])\\s*([+-]?\\d{1,4})"),
                                            QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = pattern.match(QFileInfo(_path).baseName());
    if (!match.hasMatch()) {
        return false;
    }
    const auto degrees = [&match](int group, QLatin1Char negative) {
        const int value = match.capturedRef(group + 1).toInt();
        return match.captured(group).toUpper() == negative ? -value : value;
    };
    const int latitude = degrees(1, QLatin1Char('S'));
    const int longitude = degrees(3, QLatin1Char('W'));
    if (!isCorner(latitude, longitude)) {
        return false;
    }
    _latitude = latitude;
    _longitude = westOfDateLine(longitude);
    return true;
}

// A source that has gone, or has lost its end, since its headers were read makes flat ground.
bool TORVTerrainFile::loadOriginalData(const std::atomic<bool>& abort)
{
    const bool isRead = _type == DTED1 ? loadOriginalDataDTED1(abort) : loadOriginalDataSRTM(abort);
    if (isRead || abort) {
        return isRead;
    }
    log(&TORVLog::logWarning, QLatin1String("Terrain file can't be read, its ground is flat: ") + _path);
    _isSourceLost = true;
    generateEmptyData();
    return true;
}

bool TORVTerrainFile::readSource(const char* failure, std::vector<unsigned char>& bytes, const std::atomic<bool>& abort)
{
    QFile file(_path);
    qint64 read = 0;
    if (QFileInfo(_path).isFile() && file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        const auto size = static_cast<qint64>(bytes.size());
        qint64 count = 1;
        while (read < size && count > 0 && !abort) {
            count = file.read(reinterpret_cast<char*>(bytes.data()) + read, std::min(ReadStep, size - read));
            read += std::max<qint64>(count, 0);
        }
    }
    if (read == static_cast<qint64>(bytes.size()) || abort) {
        return !abort;
    }
    log(&TORVLog::logDebug, QLatin1String(failure));
    log(&TORVLog::logDebug, QLatin1String("filename: ") + _path);
    return false;
}

bool TORVTerrainFile::loadOriginalDataDTED1(const std::atomic<bool>& abort)
{
    std::vector<unsigned char> bytes(DtedSize);
    if (!readSource("TORVTerrainFile::loadOriginalDataDTED1(): Accessing file failed.", bytes, abort)) {
        return false;
    }
    _gridWidth = _gridHeight = (DtedPoints - 1) / CoarseFactor + 1;
    _grid.resize(static_cast<std::size_t>(_gridWidth) * _gridHeight);
    return resample(DtedHeights(bytes), DtedPoints, CoarseFactor, RowStart::LAST_CELL, _grid, _gridWidth, abort);
}

bool TORVTerrainFile::loadOriginalDataSRTM(const std::atomic<bool>& abort)
{
    const int points = _longitudePoints;
    std::vector<unsigned char> bytes(2 * static_cast<std::size_t>(points) * points);
    if (!readSource("TORVTerrainFile::loadOriginalDataSRTM(): Accessing file failed.", bytes, abort)) {
        return false;
    }
    const int factor = _type == SRTM1 ? FineFactor : CoarseFactor;
    _gridWidth = _gridHeight = (points - 1) / factor + 1;
    _grid.resize(static_cast<std::size_t>(_gridWidth) * _gridHeight);
    return resample(SrtmHeights(bytes, points), points, factor, RowStart::SMALLEST_HEIGHT, _grid, _gridWidth, abort);
}
