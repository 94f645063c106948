#include "visualization/TORVColormap.h"

#include "datalib/TORVDataType.h"

#include <vtkColorTransferFunction.h>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <iterator>

namespace
{

constexpr int LinearShades = 2048;
constexpr double HalfWay = 0.5;
constexpr double Smooth = 0.0;
constexpr double Step = 1.0;

// A ramp that goes on as far as a byte does and tells the values of the radar's everyday, 16 to 80, well apart.
constexpr double BuiltInSpacing = 16.0;
constexpr std::array<std::array<int, 3>, 17> BuiltInRamp = {{{38, 47, 54},
                                                             {47, 109, 138},
                                                             {31, 140, 88},
                                                             {250, 217, 0},
                                                             {247, 124, 16},
                                                             {189, 0, 52},
                                                             {212, 52, 192},
                                                             {211, 139, 212},
                                                             {241, 215, 246},
                                                             {242, 219, 247},
                                                             {243, 222, 248},
                                                             {245, 226, 249},
                                                             {247, 231, 250},
                                                             {249, 236, 251},
                                                             {251, 242, 252},
                                                             {253, 248, 253},
                                                             {255, 255, 255}}};

int componentOf(double part)
{
    return std::isfinite(part) ? static_cast<int>(std::lround(std::clamp(part, 0.0, 1.0) * 255.0)) : 0;
}

} // namespace

// A point of the map in stored values, and the seam of the display values that its band comes from.
struct TORVColormap::Node
{
    double raw;
    Point point;
    std::size_t seam;
};

TORVColormap::TORVColormap()
{
    useBuiltIn();
    construct();
}

TORVColormap::TORVColormap(const TORVColormap& other, const TORVDataType& type, ValueRange range) : TORVColormap(other)
{
    changeValueRange(range, type);
    construct();
}

TORVColormap::TORVColormap(const TORVColormap& other)
{
    *this = other;
}

TORVColormap& TORVColormap::operator=(const TORVColormap& other)
{
    if (this == &other) {
        return *this;
    }
    _interpolation = other._interpolation;
    _colorSpace = other._colorSpace;
    _valueRange = other._valueRange;
    _scaleName = other._scaleName;
    _colorSetName = other._colorSetName;
    _lowSaturate = other._lowSaturate;
    _hiSaturate = other._hiSaturate;
    _labelFormat = other._labelFormat;
    _dataUnits = other._dataUnits;
    _colors = other._colors;
    _scale = other._scale;
    _midpoints = other._midpoints;
    construct();
    return *this;
}

TORVColormap::~TORVColormap() = default;

void TORVColormap::useBuiltIn()
{
    _interpolation = LINEAR;
    _colorSpace = VTK_CTF_RGB;
    _valueRange = DISPLAY_VALUES;
    _scaleName = _colorSetName = QStringLiteral("Fixed");
    _lowSaturate = false;
    _hiSaturate = true;
    _labelFormat = QStringLiteral("%3.0f");
    _dataUnits = QStringLiteral("%");
    _colors.clear();
    _scale.clear();
    for (const std::array<int, 3>& color : BuiltInRamp) {
        _scale.push_back(BuiltInSpacing * static_cast<double>(_scale.size()));
        _colors.push_back({color[0], color[1], color[2], color[0], color[1], color[2], false});
    }
    for (std::size_t i = 0; i + 1 < _colors.size(); ++i) {
        const Point& next = _colors[i + 1];
        _colors[i].upperR = next.lowerR;
        _colors[i].upperG = next.lowerG;
        _colors[i].upperB = next.lowerB;
    }
    _colors.back().isConstant = true;
}

std::size_t TORVColormap::nodeCount() const
{
    return std::min(_colors.size(), _scale.size());
}

int TORVColormap::getNColorsInUse() const
{
    return std::min(getNDefinedColors(), getNDefinedSeams() - 1);
}

int TORVColormap::getNSeamsInUse() const
{
    return getNColorsInUse() + 1;
}

int TORVColormap::getNRenderedColors() const
{
    return _interpolation == LINEAR ? LinearShades : getNColorsInUse();
}

void TORVColormap::setPiecewiseLinear()
{
    _interpolation = LINEAR;
    setSharpness(Smooth);
}

void TORVColormap::setPiecewiseConstant()
{
    _interpolation = CONSTANT;
    setSharpness(Step);
}

void TORVColormap::setSharpness(double sharpness)
{
    _midpoints.clear();
    auto* const map = vtkColorTransferFunction::SafeDownCast(_map);
    for (int i = 0; i < map->GetSize(); ++i) {
        double node[6]; // value, r, g, b, midpoint, sharpness
        map->GetNodeValue(i, node);
        node[4] = HalfWay;
        node[5] = sharpness;
        map->SetNodeValue(i, node);
    }
}

std::array<int, 3> TORVColormap::getColor(double value) const
{
    auto* const map = vtkColorTransferFunction::SafeDownCast(_map);
    if (!map) {
        return {0, 0, 0};
    }
    double rgb[3];
    map->GetColor(value, rgb);
    return {static_cast<int>(rgb[0] * 255.0), static_cast<int>(rgb[1] * 255.0), static_cast<int>(rgb[2] * 255.0)};
}

void TORVColormap::changeValueRange(ValueRange range, const TORVDataType& type)
{
    if (range == _valueRange || _scale.empty()) {
        return;
    }
    _valueRange = range;
    if (range == ABSOLUTE_VALUES) {
        toAbsolute(type);
        return;
    }
    _midpoints.clear();
    for (double& seam : _scale) {
        seam = type.absoluteToDisplayValue(static_cast<unsigned int>(seam));
    }
}

// What lies outside the type's range is cut off. A seam there must not be moved to the end of the range: the colour of
// the one furthest out would then stand at the last value that the type has.
void TORVColormap::toAbsolute(const TORVDataType& type)
{
    const std::vector<Node> nodes = absoluteNodes(type);
    std::vector<Point> colors;
    std::vector<double> scale;
    std::vector<double> midpoints;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        scale.push_back(nodes[i].raw);
        colors.push_back(nodes[i].point);
        const bool isLast = i + 1 == nodes.size();
        midpoints.push_back(isLast || !isStep(nodes[i].point) ? HalfWay
                                                              : stepAfter(nodes[i].seam, nodes[i], nodes[i + 1], type));
    }
    const std::size_t paired = nodeCount();
    for (std::size_t i = paired; i < _scale.size(); ++i) {
        const double raw = _scale[i] < type.getMaxDisplayValue() && _scale[i] > type.getMinDisplayValue()
                               ? type.displayToAbsoluteValue(_scale[i])
                               : type.getMaxAbsValue();
        if (raw > scale.back()) {
            scale.push_back(raw);
        }
    }
    std::copy(_colors.begin() + static_cast<std::ptrdiff_t>(paired), _colors.end(), std::back_inserter(colors));
    _scale = scale;
    _colors = colors;
    _midpoints = midpoints;
}

std::vector<TORVColormap::Node> TORVColormap::absoluteNodes(const TORVDataType& type) const
{
    const vtkSmartPointer<vtkColorTransferFunction> displayMap = makeMap();
    const auto end = _scale.begin() + static_cast<std::ptrdiff_t>(nodeCount());
    const auto nodeAt = [&](double display, int raw) {
        const auto above = std::upper_bound(_scale.begin(), end, display);
        const auto seam = static_cast<std::size_t>(above == _scale.begin() ? 0 : above - _scale.begin() - 1);
        double rgb[3];
        displayMap->GetColor(display, rgb);
        Node node{static_cast<double>(raw), _colors[seam], seam};
        node.point.lowerR = componentOf(rgb[0]);
        node.point.lowerG = componentOf(rgb[1]);
        node.point.lowerB = componentOf(rgb[2]);
        return node;
    };
    const double low = type.getMinDisplayValue();
    const double high = type.getMaxDisplayValue();
    std::vector<Node> nodes;
    if (_scale.front() <= low) {
        nodes.push_back(nodeAt(low, type.getMinAbsValue()));
    }
    for (auto seam = _scale.begin(); seam != end; ++seam) {
        if (*seam > low && *seam < high) {
            const auto index = static_cast<std::size_t>(seam - _scale.begin());
            const Node node{static_cast<double>(type.displayToAbsoluteValue(*seam)), _colors[index], index};
            // Two seams that share a stored value: the upper one has it.
            if (!nodes.empty() && nodes.back().raw >= node.raw) {
                nodes.pop_back();
            }
            nodes.push_back(node);
        }
    }
    if (*(end - 1) >= high || nodes.empty()) {
        const Node node = nodeAt(high, type.getMaxAbsValue());
        if (nodes.empty() || nodes.back().raw < node.raw) {
            nodes.push_back(node);
        }
    }
    return nodes;
}

// A stored value must have the colour that its display value has, so the step lies just below the first stored value
// that is past the middle of the two seams: half-way between the stored seams is another place where the range cuts a
// band, or where the type's scaling is no straight line.
double TORVColormap::stepAfter(std::size_t seam, const Node& from, const Node& to, const TORVDataType& type) const
{
    if (seam + 1 >= nodeCount()) {
        return HalfWay;
    }
    const double middle = (_scale[seam] + _scale[seam + 1]) / 2.0;
    const auto isPast = [&](double raw) {
        return type.absoluteToDisplayValue(static_cast<unsigned int>(raw)) >= middle;
    };
    double first = from.raw;
    double last = to.raw; // past the middle, or the end of the range
    while (last - first > 1.0) {
        const double between = std::floor((first + last) / 2.0);
        (isPast(between) ? last : first) = between;
    }
    const double step = isPast(from.raw) ? from.raw : last - 0.5;
    return (step - from.raw) / (to.raw - from.raw);
}

void TORVColormap::construct()
{
    // NOLINTBEGIN(readability-container-size-empty): the words that end up in the log
    assert(_colors.size() > 0);
    assert(_scale.size() > 0);
    // NOLINTEND(readability-container-size-empty)
    _map = makeMap();
}

bool TORVColormap::isStep(const Point& point) const
{
    return _interpolation == CONSTANT || (_interpolation == MIXED && point.isConstant);
}

vtkSmartPointer<vtkColorTransferFunction> TORVColormap::makeMap() const
{
    auto map = vtkSmartPointer<vtkColorTransferFunction>::New();
    map->SetColorSpace(_colorSpace);
    for (std::size_t i = 0; i < nodeCount(); ++i) {
        const Point& point = _colors[i];
        const double midpoint = i < _midpoints.size() ? _midpoints[i] : HalfWay;
        map->AddRGBPoint(_scale[i], point.lowerR / 255.0, point.lowerG / 255.0, point.lowerB / 255.0, midpoint,
                         isStep(point) ? Step : Smooth);
    }
    return map;
}
