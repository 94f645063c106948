#pragma once

#include <QString>
#include <QVector>

#include <boost/shared_ptr.hpp>

#include <vtkSmartPointer.h>

#include <array>
#include <vector>

class QSettings;
class TORVDataType;
class vtkColorTransferFunction;
class vtkScalarBarActor;
class vtkScalarsToColors;

/**
 * A colour scale of the installation's colour file as a VTK map and as a legend.
 *
 * The file is the INI file "TORV3DColors" of the organisation, the user's before the system's, and is never written.
 * A scale is a list of seams, display values in ascending order, and names a set of colour bands; the band's lower
 * colour stands at its seam. The map runs from each colour to the next one, or changes half-way between two seams, or
 * does either from band to band.
 *
 * Nothing in the file is believed: colours are brought into 0 to 255, seams that are no numbers are left out with their
 * bands, seams out of order are sorted, both with one warning. Where there is no scale to be had, a built-in one takes
 * its place, with one warning and one history line that name the file. What has been said of a file is not said again.
 *
 * Ownership: each object has a map of its own, copies too.
 *
 * Thread: one at a time for each object, its map included; a map that was handed to a mapper belongs to whoever draws.
 * Construction and the static functions from any thread.
 */
class TORVColormap
{
public:
    using Ptr = boost::shared_ptr<TORVColormap>;
    using CPtr = boost::shared_ptr<const TORVColormap>;

    /// What the seams, and so the arguments of the map, are.
    enum ValueRange : int
    {
        ABSOLUTE_VALUES = 0, ///< as stored in a product
        DISPLAY_VALUES = 1   ///< in the unit of the data type
    };

    struct Point
    {
        int lowerR = 0;
        int lowerG = 0;
        int lowerB = 0;
        int upperR = 0;
        int upperG = 0;
        int upperB = 0;
        bool isConstant = false; ///< lower equals upper
    };

    struct ColorScaleListItem
    {
        QString name;
        int number = 0;
    };

    /// What the colour file tells of a data type; empty where it tells nothing.
    struct DataTypeLegendInfo
    {
        QString name;
        QString type;
        bool isLinear = false;
    };

    /// No colour group, no raw data type.
    static constexpr int None = -1;

    /// The built-in scale "Fixed": seams at 0, 16, 32, ... in display values.
    TORVColormap();

    /// The scale of that name. For a type that the table of data types lacks `fileCode`, the code in the product's
    /// header, finds the scales.
    TORVColormap(const QString& name, const TORVDataType& type, ValueRange range, int fileCode = None);

    /// The scale of that number.
    TORVColormap(int id, const TORVDataType& type, ValueRange range);

    /// The same colours with the seams in another range.
    TORVColormap(const TORVColormap& other, const TORVDataType& type, ValueRange range);

    TORVColormap(const TORVColormap& other);
    TORVColormap& operator=(const TORVColormap& other);
    virtual ~TORVColormap();

    /// A vtkColorTransferFunction.
    vtkSmartPointer<vtkScalarsToColors> getMap() const { return _map; }

    const QString& getScaleName() const { return _scaleName; }
    const QString& getColorSetName() const { return _colorSetName; }
    const QString& getDataUnits() const { return _dataUnits; }
    ValueRange getValueRange() const { return _valueRange; }
    int getInterpolation() const { return _interpolation; } ///< 0 all bands run, 1 all stand, 2 mixed
    bool isLowSaturate() const { return _lowSaturate; }
    bool isHiSaturate() const { return _hiSaturate; }
    const std::vector<double>& getSeams() const { return _scale; }
    const std::vector<Point>& getColors() const { return _colors; }

    int getNDefinedColors() const { return static_cast<int>(_colors.size()); }
    int getNDefinedSeams() const { return static_cast<int>(_scale.size()); }
    int getNColorsInUse() const; ///< whole bands: a last colour without a closing seam is none
    int getNSeamsInUse() const;
    int getNRenderedColors() const;

    void setPiecewiseLinear();
    void setPiecewiseConstant();

    /// 0 to 255 each; black without a map.
    std::array<int, 3> getColor(double value) const;

    /// A seam as the scale's label format writes it, without blanks at its ends.
    QString getLabel(double seam) const;

    /**
     * A legend of this scale, whose seams must be display values: title and unit over the ramp, each band as high as
     * the others, numbers at the seams, as many as there is room for.
     *
     * The actor is a TORVColorBarActor. Its text starts in the colour for the day's strip; `SetTextColor` changes it in
     * place when the night comes. The box must be as wide as `GetNeededWidth` says, or numbers are cut off.
     *
     * Thread: main thread only.
     * @param x, y, width, height  fractions of the viewport
     */
    vtkSmartPointer<vtkScalarBarActor> makeBar(const QString& title, double x, double y, double width,
                                               double height) const;

    /// `None` where the colour file doesn't know the type.
    static int getColorGroupIdForDataType(int dataType);
    static DataTypeLegendInfo getDataTypeLegendInfo(int dataType);

    /// In the order of their numbers; none for a type without a group.
    static QVector<ColorScaleListItem> getScalesForDataType(int dataType);

    /// 1, with a warning, where no scale of the data type has that name.
    static int getColormapId(const QString& name, int dataType);

    /// The raw data type to ask the colour file with: the type's own, or the header's code where it has none.
    static int codeOf(const TORVDataType& type, int fileCode);

private:
    enum Interpolation : int
    {
        LINEAR = 0,
        CONSTANT = 1,
        MIXED = 2
    };
    struct Node;

    void useBuiltIn();
    void load(int id);
    int readScale(QSettings& settings);
    void readColors(QSettings& settings);
    void noteBand(bool isConstant, bool isFirst);
    bool tidySeams();

    void changeValueRange(ValueRange range, const TORVDataType& type);
    void toAbsolute(const TORVDataType& type);
    std::vector<Node> absoluteNodes(const TORVDataType& type) const;
    double stepAfter(std::size_t seam, const Node& from, const Node& to, const TORVDataType& type) const;
    void construct();

    std::size_t nodeCount() const; // of the map
    bool isStep(const Point& point) const;
    vtkSmartPointer<vtkColorTransferFunction> makeMap() const;
    void setSharpness(double sharpness);

    int _interpolation = LINEAR;
    int _colorSpace = 0; // VTK's number: RGB, or HSV for any other text in the file
    ValueRange _valueRange = DISPLAY_VALUES;
    QString _scaleName;
    QString _colorSetName;
    bool _lowSaturate = false;
    bool _hiSaturate = true;
    QString _labelFormat; // checked: good for printf with one double
    QString _dataUnits;
    std::vector<Point> _colors;
    std::vector<double> _scale;
    std::vector<double> _midpoints; // where a step lies between two nodes, 0 to 1; empty: half-way
    vtkSmartPointer<vtkScalarsToColors> _map;
};
