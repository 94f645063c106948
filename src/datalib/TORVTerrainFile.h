#pragma once

#include "utils/TORVCoordinate.h"
#include "utils/TORVGeoProjection.h"

#include <QString>

#include <boost/shared_ptr.hpp>

#include <vtkSmartPointer.h>

#include <array>
#include <atomic>
#include <utility>
#include <vector>

class TORVLog;
class vtkActor;
class vtkColorTransferFunction;
class vtkImageData;
class vtkPolyData;

/**
 * One square degree of ground: a file of public elevation data, or a square at sea level where there is none.
 *
 * Source formats: SRTM (1 or 3 arc seconds, big-endian, rows from north to south, placed by the file's name) and DTED
 * level 1 (MIL-PRF-89020B: text headers, a record for each meridian, big-endian in sign and magnitude, placed by its
 * header). Whatever the source, a block becomes a mesh of 61 x 61 points in metres of a radar's projection, with z in
 * metres above sea level, and a picture of 256 x 256 pixels that carries the detail. The pair is kept in a cache
 * directory (`TORVTerrainCache`).
 *
 * Points of the mesh and rows of the picture run from the south-west corner, eastwards first.
 *
 * Thread: one at a time, until it is loaded and nobody loads it any more; then any thread may ask.
 */
class TORVTerrainFile
{
public:
    using Ptr = boost::shared_ptr<TORVTerrainFile>;
    using CPtr = boost::shared_ptr<const TORVTerrainFile>;

    enum Type : int
    {
        UNKNOWN = 0, ///< not recognised
        EMPTY = 1,   ///< no file: flat, at sea level
        DTED1 = 2,
        SRTM1 = 3, ///< 3601 x 3601 points
        SRTM3 = 4  ///< 1201 x 1201 points
    };

    /// A block that has a source; the cache directory is an absolute path.
    TORVTerrainFile(const QString& path, const QString& cachePath);
    /// An empty block.
    TORVTerrainFile(const TORVCoordinate& corner, const QString& cachePath);
    virtual ~TORVTerrainFile();
    TORVTerrainFile(const TORVTerrainFile&) = delete;
    TORVTerrainFile& operator=(const TORVTerrainFile&) = delete;

    /// The same block of the same source without what was loaded: sets of several radars show one source at once.
    Ptr unloadedCopy() const;

    /// What the source is and where it lies, from its headers or its name.
    /// @return false for a file that is none of the known formats; debug lines say why.
    bool loadFileInfo();

    Type getType() const { return _type; }
    QString getTypeAsString() const;
    QString getBlockName() const; ///< like "SRTM3_N46E8"
    const QString& getPath() const { return _path; }
    TORVCoordinate getCorner() const { return {_latitude, _longitude}; } ///< south-west
    double getLatitudeStep() const { return _latitudeStep; }             ///< degrees between source points
    double getLongitudeStep() const { return _longitudeStep; }
    int getLatitudePoints() const { return _latitudePoints; }
    int getLongitudePoints() const { return _longitudePoints; }

    /**
     * Makes mesh and picture from the source and writes the pair into the cache. What was made is loaded as well, so a
     * cache that can't be written costs time at the next start, no ground. A source that can't be read whole is shown
     * flat, with a warning, and not kept in the cache.
     * @param cacheFile  where the mesh goes; the picture goes to the same name followed by ".png"
     * @param abort      is looked at all the time
     * @return whether the pair is in the cache
     */
    bool convertData(const TORVGeoProjection::CPtr& projection, const QString& cacheFile,
                     const std::atomic<bool>& abort);

    /// Reads the pair. A mesh without a picture is loaded without one; where mesh or picture can't be read, nothing
    /// changes.
    bool loadCachedData(const QString& cacheFile);

    bool isLoaded() const { return getPolyData() != nullptr; }

    /// Whether the last conversion made flat ground of a source that could not be read.
    bool isSourceLost() const { return _isSourceLost; }

    /// Null until loaded. Mesh and picture may be shared by windows, an actor may not.
    vtkPolyData* getPolyData() const;
    vtkImageData* getTextureImage() const; ///< null also where the pair has no picture
    vtkActor* getActor() const;

    /// Whether the place lies in this square; southern and western edges belong to it, the others to its neighbours.
    bool contains(const TORVCoordinate& location) const;

    /// Metres above sea level of the mesh point of the cell that the place lies in; 0 outside, or when nothing is
    /// loaded.
    double getElevationAtLocation(const TORVCoordinate& location) const;

    /// Blocks that are worked on side by side keep their lines to themselves until it's their turn to speak.
    void holdLog() { _isLogHeld = true; }
    void releaseLog();

    void printDebug() const;

private:
    using Color = std::array<double, 3>;                // red, green, blue, 0 to 1
    using Say = void (TORVLog::*)(const QString& text); // one of the log's levels
    using Line = std::pair<Say, QString>;

    bool loadHeadersDTED1();
    bool loadHeadersSRTM();
    bool takeHeadersDTED1(const QByteArray& uhl);
    bool takeLocationSRTM();
    bool fail(const char* reason, const char* failed);

    bool loadOriginalData(const std::atomic<bool>& abort);
    bool loadOriginalDataDTED1(const std::atomic<bool>& abort);
    bool loadOriginalDataSRTM(const std::atomic<bool>& abort);
    bool readSource(const char* failure, std::vector<unsigned char>& bytes, const std::atomic<bool>& abort);
    void generateEmptyData();

    bool makeGrids(const std::atomic<bool>& abort);
    void createHeightField();
    bool createColorData(const std::atomic<bool>& abort);
    Color colorOf(double height);
    void heightToColor(double height, float shade, unsigned char* rgb);
    bool convertOriginalData(const TORVGeoProjection& projection, const std::atomic<bool>& abort);
    bool convertOriginalDataToTexture(const std::atomic<bool>& abort);
    void resetConverterData();
    bool writePair(const QString& cacheFile);

    void setLoaded(const vtkSmartPointer<vtkPolyData>& mesh, const vtkSmartPointer<vtkImageData>& picture);
    void makeActor();
    void log(Say say, const QString& text);

    QString _path;
    QString _cachePath;
    Type _type = UNKNOWN;
    double _latitude = 0.0; // of the south-west corner, degrees
    double _longitude = 0.0;
    double _latitudeStep = 0.0; // degrees
    double _longitudeStep = 0.0;
    int _latitudePoints = 0;
    int _longitudePoints = 0;

    // Only while converting. Rows of the grid run from the north, those of the others from the south.
    std::vector<double> _grid;
    int _gridWidth = 0;
    int _gridHeight = 0;
    std::vector<unsigned char> _colors; // 3 bytes a pixel
    int _colorWidth = 0;
    int _colorHeight = 0;
    std::vector<double> _heightField;
    int _heightFieldWidth = 0;
    int _heightFieldHeight = 0;
    vtkSmartPointer<vtkColorTransferFunction> _colorMap;
    std::vector<Color> _knownColors; // by quarters of a metre
    vtkSmartPointer<vtkPolyData> _mesh;
    vtkSmartPointer<vtkImageData> _picture;

    vtkSmartPointer<vtkPolyData> _polyData;
    vtkSmartPointer<vtkImageData> _textureImage;
    vtkSmartPointer<vtkActor> _actor;

    bool _isSourceLost = false;
    bool _isLogHeld = false;
    std::vector<Line> _heldLines;
};
