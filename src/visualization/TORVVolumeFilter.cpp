#include "visualization/TORVVolumeFilter.h"

#include "utils/TORVParallel.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>
#include <vector>

namespace
{

using Size = std::array<int, 3>;

constexpr int RadiusInDeviations = 3;

// Raw values that mean something; all others are no data.
template <typename T>
struct Valid
{
    T min;
    T max;

    bool operator()(T raw) const { return raw >= min && raw <= max; }
};

template <typename T>
Valid<T> validOf(const TORVDataType& type)
{
    return {static_cast<T>(type.getMinAbsValue()), static_cast<T>(type.getMaxAbsValue())};
}

std::size_t rowIndex(const Size& size, int y, int z)
{
    return (static_cast<std::size_t>(z) * static_cast<std::size_t>(size[1]) + static_cast<std::size_t>(y)) *
           static_cast<std::size_t>(size[0]);
}

vtkSmartPointer<vtkImageData> makeImage(const Size& size, int vtkType)
{
    auto image = vtkSmartPointer<vtkImageData>::New();
    image->SetDimensions(size[0], size[1], size[2]);
    try {
        image->AllocateScalars(vtkType, 1);
    } catch (const std::bad_alloc&) {
        return {};
    }
    return image;
}

template <typename T>
T* scalars(vtkImageData* image)
{
    return static_cast<T*>(image->GetScalarPointer());
}

// ---- No reduction: a copy without special codes ----

template <typename T>
void copyValid(const T* from, T* to, const Size& size, const Valid<T>& isValid, const std::atomic<bool>& abort)
{
    const std::size_t plane = rowIndex(size, 0, 1);
    TORVParallel::forEach(size[2], [&](int z) {
        if (abort) {
            return;
        }
        const std::size_t first = plane * static_cast<std::size_t>(z);
        std::transform(from + first, from + first + plane, to + first,
                       [&](T raw) { return isValid(raw) ? raw : T(0); });
    });
}

// ---- Means of blocks ----

struct Sum
{
    uint32_t total = 0;
    uint32_t count = 0;
};

int blocksOf(int points, int shrink)
{
    return (points + shrink - 1) / shrink;
}

// Blocks at the far ends have what is left of the grid.
int pointsInBlock(int points, int shrink, int block)
{
    return std::min(shrink, points - block * shrink);
}

template <typename T>
T meanOf(const Sum& sum, int points)
{
    if (sum.count == 0 || 4 * sum.count < static_cast<uint32_t>(points)) {
        return 0;
    }
    return static_cast<T>((2 * sum.total + sum.count) / (2 * sum.count));
}

template <typename T>
void addPoints(const T* points, int count, const Valid<T>& isValid, Sum& sum)
{
    for (int i = 0; i < count; ++i) {
        const bool valid = isValid(points[i]);
        sum.total += valid ? points[i] : 0U;
        sum.count += valid ? 1U : 0U;
    }
}

// The width of a block is a constant to the compiler: the loop over its points is the innermost of all.
template <typename T, int Width>
void addRow(const T* row, int points, const Valid<T>& isValid, Sum* sums)
{
    const int whole = points / Width;
    for (int block = 0; block < whole; ++block) {
        addPoints(row + block * Width, Width, isValid, sums[block]);
    }
    addPoints(row + whole * Width, points - whole * Width, isValid, sums[whole]);
}

template <typename T>
using RowAdder = void (*)(const T* row, int points, const Valid<T>& isValid, Sum* sums);

template <typename T>
RowAdder<T> rowAdder(int shrink)
{
    static_assert(TORVVolumeFilter::LargestShrink == 4, "an adder for each width");
    constexpr RowAdder<T> Adders[] = {addRow<T, 1>, addRow<T, 2>, addRow<T, 3>, addRow<T, 4>};
    return Adders[shrink - 1];
}

template <typename T>
void meanOfBlocks(const T* from, const Size& points, T* to, const Size& blocks, const Size& shrink,
                  const Valid<T>& isValid, const std::atomic<bool>& abort)
{
    const RowAdder<T> add = rowAdder<T>(shrink[0]);
    TORVParallel::forEach(blocks[1] * blocks[2], [&](int row) {
        if (abort) {
            return;
        }
        const int y = row % blocks[1];
        const int z = row / blocks[1];
        const int rows = pointsInBlock(points[1], shrink[1], y);
        const int levels = pointsInBlock(points[2], shrink[2], z);
        std::vector<Sum> sums(static_cast<std::size_t>(blocks[0]) + 1); // the last takes what is no whole block
        for (int level = 0; level < levels; ++level) {
            for (int line = 0; line < rows; ++line) {
                const std::size_t first = rowIndex(points, y * shrink[1] + line, z * shrink[2] + level);
                add(from + first, points[0], isValid, sums.data());
            }
        }
        T* const out = to + rowIndex(blocks, y, z);
        for (int x = 0; x < blocks[0]; ++x) {
            const int columns = pointsInBlock(points[0], shrink[0], x);
            out[x] = meanOf<T>(sums[static_cast<std::size_t>(x)], columns * rows * levels);
        }
    });
}

// ---- Gaussian ----

// One axis of the Gaussian. Weights sum up to 1; what of them falls into the grid at a point is `inside`.
struct Kernel
{
    int radius = 0;
    std::vector<float> weights; // 2 * radius + 1
    std::vector<float> inside;  // one a point of the axis

    Kernel(double deviation, int points) : radius(static_cast<int>(deviation * RadiusInDeviations))
    {
        double sum = 0.0;
        for (int i = -radius; i <= radius; ++i) {
            const double height = radius == 0 ? 1.0 : std::exp(-i * i / (2.0 * deviation * deviation));
            weights.push_back(static_cast<float>(height));
            sum += height;
        }
        for (float& height : weights) {
            height /= static_cast<float>(sum);
        }
        for (int i = 0; i < points; ++i) {
            float share = 0.0F;
            for (int k = std::max(0, i - radius); k <= std::min(points - 1, i + radius); ++k) {
                share += weights[static_cast<std::size_t>(k - i + radius)];
            }
            inside.push_back(share);
        }
    }

    float weight(int offset) const { return weights[static_cast<std::size_t>(offset + radius)]; }
};

// Part of a row, from `begin` to before `end`; nothing outside it is valid.
struct Span
{
    int begin = 0;
    int end = 0;

    bool isEmpty() const { return begin >= end; }

    Span with(const Span& other) const
    {
        if (isEmpty() || other.isEmpty()) {
            return isEmpty() ? other : *this;
        }
        return {std::min(begin, other.begin), std::max(end, other.end)};
    }
};

// Weighted sums of values and of weights along one row; zero outside the span.
struct Line
{
    std::vector<float> values;
    std::vector<float> weights;
    Span span;

    explicit Line(int points)
        : values(static_cast<std::size_t>(points), 0.0F), weights(static_cast<std::size_t>(points), 0.0F)
    {
    }

    void clear(const Span& next)
    {
        span = next;
        std::fill(values.begin() + span.begin, values.begin() + span.end, 0.0F);
        std::fill(weights.begin() + span.begin, weights.begin() + span.end, 0.0F);
    }

    // Reads `other` inside its span only: what it holds beyond is left over from another row.
    void add(const Line& other, float factor)
    {
        float* const toValue = values.data();
        float* const toWeight = weights.data();
        const float* const fromValue = other.values.data();
        const float* const fromWeight = other.weights.data();
        for (int x = other.span.begin; x < other.span.end; ++x) {
            toValue[x] += factor * fromValue[x];
            toWeight[x] += factor * fromWeight[x];
        }
    }
};

void sumUp(Line& to, const std::vector<const Line*>& lines, const std::vector<float>& factors)
{
    Span span;
    for (const Line* line : lines) {
        span = span.with(line->span);
    }
    to.clear(span);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        to.add(*lines[i], factors[i]);
    }
}

// Smooths a strip of rows from the lowest level to the highest. It remembers the strip's levels that the vertical part
// of the Gaussian reaches and nothing else, so that a volume never stands in memory as floating-point numbers.
template <typename T>
class Strip
{
public:
    Strip(const T* from, T* to, const Size& size, const std::array<Kernel, 3>& kernels, const Valid<T>& isValid,
          int firstRow, int rows)
        : _from(from), _to(to), _size(size), _kernels(kernels), _isValid(isValid), _firstRow(firstRow), _rows(rows),
          _padded(static_cast<std::size_t>(2 * (size[0] + 2 * kernels[0].radius)), 0.0F),
          _alongX(static_cast<std::size_t>(rows + 2 * kernels[1].radius), Line(size[0])),
          _levels(static_cast<std::size_t>(2 * kernels[2].radius + 1),
                  std::vector<Line>(static_cast<std::size_t>(rows), Line(size[0]))),
          _sum(size[0])
    {
    }

    void run(const std::atomic<bool>& abort)
    {
        const int reach = _kernels[2].radius;
        for (int z = -reach; z < _size[2] && !abort; ++z) {
            if (z + reach < _size[2]) {
                smoothLevel(z + reach);
            }
            if (z >= 0) {
                finishLevel(z);
            }
        }
    }

private:
    std::vector<Line>& level(int z) { return _levels[static_cast<std::size_t>(z) % _levels.size()]; }

    void smoothLevel(int z)
    {
        const int reach = _kernels[1].radius;
        const int begin = std::max(0, _firstRow - reach);
        const int end = std::min(_size[1], _firstRow + _rows + reach);
        for (int y = begin; y < end; ++y) {
            smoothRow(_from + rowIndex(_size, y, z), _alongX[static_cast<std::size_t>(y - begin)]);
        }
        std::vector<const Line*> lines;
        std::vector<float> factors;
        for (int row = 0; row < _rows; ++row) {
            const int y = _firstRow + row;
            lines.clear();
            factors.clear();
            for (int k = std::max(begin, y - reach); k <= std::min(end - 1, y + reach); ++k) {
                const Line& line = _alongX[static_cast<std::size_t>(k - begin)];
                if (!line.span.isEmpty()) {
                    lines.push_back(&line);
                    factors.push_back(_kernels[1].weight(k - y));
                }
            }
            sumUp(level(z)[static_cast<std::size_t>(row)], lines, factors);
        }
    }

    // Values and mask are laid out with room for the kernel at both ends.
    void smoothRow(const T* row, Line& line)
    {
        const int reach = _kernels[0].radius;
        const Span valid = findValid(row);
        if (valid.isEmpty()) {
            line.span = {};
            return;
        }
        float* const values = _padded.data() + reach;
        float* const mask = values + _size[0] + 2 * reach;
        std::fill(values + valid.begin - reach, values + valid.end + reach, 0.0F);
        std::fill(mask + valid.begin - reach, mask + valid.end + reach, 0.0F);
        for (int x = valid.begin; x < valid.end; ++x) {
            const bool isValid = _isValid(row[x]);
            values[x] = isValid ? static_cast<float>(row[x]) : 0.0F;
            mask[x] = isValid ? 1.0F : 0.0F;
        }
        line.clear({std::max(0, valid.begin - reach), std::min(_size[0], valid.end + reach)});
        convolve(values, mask, valid, line);
    }

    void convolve(const float* values, const float* mask, const Span& valid, Line& line) const
    {
        float* const toValue = line.values.data();
        float* const toWeight = line.weights.data();
        for (int k = -_kernels[0].radius; k <= _kernels[0].radius; ++k) {
            const float weight = _kernels[0].weight(k);
            const int begin = std::max(line.span.begin, valid.begin - k);
            const int end = std::min(line.span.end, valid.end - k);
            for (int x = begin; x < end; ++x) {
                toValue[x] += weight * values[x + k];
                toWeight[x] += weight * mask[x + k];
            }
        }
    }

    Span findValid(const T* row) const
    {
        const T* const end = row + _size[0];
        const T* const first = std::find_if(row, end, _isValid);
        if (first == end) {
            return {};
        }
        const T* last = end - 1;
        while (!_isValid(*last)) {
            --last;
        }
        return {static_cast<int>(first - row), static_cast<int>(last - row) + 1};
    }

    void finishLevel(int z)
    {
        const int reach = _kernels[2].radius;
        std::vector<const Line*> lines;
        std::vector<float> factors;
        for (int row = 0; row < _rows; ++row) {
            lines.clear();
            factors.clear();
            for (int k = std::max(0, z - reach); k <= std::min(_size[2] - 1, z + reach); ++k) {
                const Line& line = level(k)[static_cast<std::size_t>(row)];
                if (!line.span.isEmpty()) {
                    lines.push_back(&line);
                    factors.push_back(_kernels[2].weight(k - z));
                }
            }
            sumUp(_sum, lines, factors);
            finishRow(_firstRow + row, z);
        }
    }

    void finishRow(int y, int z)
    {
        const std::size_t first = rowIndex(_size, y, z);
        const T* const in = _from + first;
        T* const out = _to + first;
        const Span span = _sum.span;
        std::fill(out, out + span.begin, T(0));
        std::fill(out + std::max(span.begin, span.end), out + _size[0], T(0));
        const float inside =
            0.5F * _kernels[1].inside[static_cast<std::size_t>(y)] * _kernels[2].inside[static_cast<std::size_t>(z)];
        const float* const insideX = _kernels[0].inside.data();
        const float* const values = _sum.values.data();
        const float* const weights = _sum.weights.data();
        for (int x = span.begin; x < span.end; ++x) {
            const bool isKept = _isValid(in[x]) || weights[x] > inside * insideX[x];
            out[x] = isKept ? static_cast<T>(values[x] / weights[x] + 0.5F) : T(0);
        }
    }

    const T* _from;
    T* _to;
    Size _size;
    const std::array<Kernel, 3>& _kernels;
    Valid<T> _isValid;
    int _firstRow;
    int _rows;
    std::vector<float> _padded;
    std::vector<Line> _alongX;
    std::vector<std::vector<Line>> _levels; // a ring
    Line _sum;
};

template <typename T>
void smoothVolume(const T* from, T* to, const Size& size, const std::array<double, 3>& deviations,
                  const Valid<T>& isValid, const std::atomic<bool>& abort)
{
    const std::array<Kernel, 3> kernels = {Kernel(deviations[0], size[0]), Kernel(deviations[1], size[1]),
                                           Kernel(deviations[2], size[2])};
    const int rows = std::max(16, 2 * kernels[1].radius); // rows at a strip's rim are smoothed along x twice
    TORVParallel::forEach((size[1] + rows - 1) / rows, [&](int index) {
        const int first = index * rows;
        Strip<T>(from, to, size, kernels, isValid, first, std::min(rows, size[1] - first)).run(abort);
    });
}

template <typename T>
vtkSmartPointer<vtkImageData> runTyped(const T* raw, const Size& points, const Size& shrink, double smooth,
                                       const Valid<T>& isValid, int vtkType, const std::atomic<bool>& abort)
{
    const Size blocks = {blocksOf(points[0], shrink[0]), blocksOf(points[1], shrink[1]),
                         blocksOf(points[2], shrink[2])};
    vtkSmartPointer<vtkImageData> image = makeImage(blocks, vtkType);
    const T* from = raw;
    vtkSmartPointer<vtkImageData> shrunken;
    if (image && blocks != points) {
        shrunken = smooth > 0.0 ? makeImage(blocks, vtkType) : image;
        if (shrunken) {
            meanOfBlocks(raw, points, scalars<T>(shrunken), blocks, shrink, isValid, abort);
            from = scalars<T>(shrunken);
        }
    }
    if (!image || (blocks != points && !shrunken)) {
        return {};
    }
    if (smooth > 0.0) {
        const std::array<double, 3> deviations = {smooth / shrink[0], smooth / shrink[1], smooth / shrink[2]};
        smoothVolume(from, scalars<T>(image), blocks, deviations, isValid, abort);
    } else if (blocks == points) {
        copyValid(from, scalars<T>(image), points, isValid, abort);
    }
    return image;
}

} // namespace

TORVVolumeFilter::TORVVolumeFilter(int shrinkHorizontal, int shrinkVertical, double smooth)
    : _shrink{std::clamp(shrinkHorizontal, 1, LargestShrink), std::clamp(shrinkHorizontal, 1, LargestShrink),
              std::clamp(shrinkVertical, 1, LargestShrink)},
      _smooth(std::isnan(smooth) ? 0.0 : std::clamp(smooth, 0.0, LargestSmooth))
{
}

vtkSmartPointer<vtkImageData> TORVVolumeFilter::run(const TORVProductData& data, const std::array<int, 3>& points,
                                                    const TORVDataType& type, const std::atomic<bool>& abort) const
{
    vtkSmartPointer<vtkImageData> image;
    if (data.itemSize() == 1) {
        image = runTyped(static_cast<const uint8_t*>(data.items()), points, _shrink, _smooth, validOf<uint8_t>(type),
                         VTK_UNSIGNED_CHAR, abort);
    } else {
        image = runTyped(static_cast<const uint16_t*>(data.items()), points, _shrink, _smooth, validOf<uint16_t>(type),
                         VTK_UNSIGNED_SHORT, abort);
    }
    if (!image || abort) {
        return {};
    }
    image->SetSpacing(_shrink[0], _shrink[1], LevelSpacing * _shrink[2]);
    image->SetOrigin((_shrink[0] - 1) / 2.0, (_shrink[1] - 1) / 2.0, LevelSpacing * (_shrink[2] - 1) / 2.0);
    return image;
}
