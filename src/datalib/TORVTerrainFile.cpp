#include "datalib/TORVTerrainFile.h"

#include "datalib/TORVTerrainCache.h"
#include "utils/TORVLog.h"

#include <QFile>

#include <boost/make_shared.hpp>

#include <vtkActor.h>
#include <vtkColorTransferFunction.h>
#include <vtkImageData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProperty.h>
#include <vtkTexture.h>

#include <cmath>

namespace
{

constexpr double FullCircle = 360.0;
constexpr double Ambient = 0.3;
constexpr double Diffuse = 1.0;
constexpr int MaxAnisotropy = 8;

// Degrees east of the block's western edge, 0 to 360.
double eastOf(double corner, double longitude)
{
    const double degrees = longitude - corner;
    if (degrees < 0.0) {
        return degrees + FullCircle;
    }
    return degrees >= FullCircle ? degrees - FullCircle : degrees;
}

vtkSmartPointer<vtkTexture> textureOf(vtkImageData* image)
{
    const auto texture = vtkSmartPointer<vtkTexture>::New();
    if (texture) {
        texture->SetInputData(image);
        texture->InterpolateOn();
        texture->MipmapOn();
        texture->SetMaximumAnisotropicFiltering(MaxAnisotropy);
        texture->EdgeClampOn(); // else a block's edge takes colour from its opposite one
        texture->RepeatOff();
    }
    return texture;
}

} // namespace

TORVTerrainFile::TORVTerrainFile(const QString& path, const QString& cachePath) : _path(path), _cachePath(cachePath) {}

TORVTerrainFile::TORVTerrainFile(const TORVCoordinate& corner, const QString& cachePath)
    : _cachePath(cachePath), _type(EMPTY), _latitude(corner.getLat()), _longitude(corner.getLon())
{
}

TORVTerrainFile::~TORVTerrainFile() = default;

TORVTerrainFile::Ptr TORVTerrainFile::unloadedCopy() const
{
    const auto copy = boost::make_shared<TORVTerrainFile>(_path, _cachePath);
    copy->_type = _type;
    copy->_latitude = _latitude;
    copy->_longitude = _longitude;
    copy->_latitudeStep = _latitudeStep;
    copy->_longitudeStep = _longitudeStep;
    copy->_latitudePoints = _latitudePoints;
    copy->_longitudePoints = _longitudePoints;
    return copy;
}

bool TORVTerrainFile::loadFileInfo()
{
    if (_path.endsWith(QLatin1String(".dt1"), Qt::CaseInsensitive)) {
        return loadHeadersDTED1();
    }
    return _path.endsWith(QLatin1String(".hgt"), Qt::CaseInsensitive) && loadHeadersSRTM();
}

QString TORVTerrainFile::getTypeAsString() const
{
    switch (_type) {
    case EMPTY:
        return QStringLiteral("EMPTY");
    case DTED1:
        return QStringLiteral("DTED1");
    case SRTM1:
        return QStringLiteral("SRTM1");
    case SRTM3:
        return QStringLiteral("SRTM3");
    case UNKNOWN:
        break;
    }
    return QStringLiteral("UNKNOWN");
}

QString TORVTerrainFile::getBlockName() const
{
    const TORVCoordinate corner = getCorner();
    return getTypeAsString() + QLatin1Char('_') + corner.getLatitudeMark() +
           QString::number(static_cast<int>(std::abs(corner.getLat()))) + corner.getLongitudeMark() +
           QString::number(static_cast<int>(std::abs(corner.getLon())));
}

vtkPolyData* TORVTerrainFile::getPolyData() const
{
    return _polyData;
}

vtkImageData* TORVTerrainFile::getTextureImage() const
{
    return _textureImage;
}

vtkActor* TORVTerrainFile::getActor() const
{
    return _actor;
}

bool TORVTerrainFile::loadCachedData(const QString& cacheFile)
{
    const std::optional<TORVTerrainCache::Pair> pair = TORVTerrainCache::read(cacheFile);
    if (!pair) {
        if (QFile::exists(cacheFile)) {
            log(&TORVLog::logWarning, QLatin1String("Damaged terrain cache file: ") + cacheFile);
        }
        return false;
    }
    setLoaded(pair->mesh, pair->picture);
    return true;
}

void TORVTerrainFile::setLoaded(const vtkSmartPointer<vtkPolyData>& mesh, const vtkSmartPointer<vtkImageData>& picture)
{
    _polyData = mesh;
    _textureImage = picture;
    // Worked out here, since VTK does it in the first query, and queries come from several threads later.
    _polyData->ComputeBounds();
    makeActor();
}

// Without a rendering library in the program VTK has no actors to give, and mesh and look-up serve all the same.
void TORVTerrainFile::makeActor()
{
    _actor = vtkSmartPointer<vtkActor>::New();
    const auto mapper = vtkSmartPointer<vtkPolyDataMapper>::New();
    if (!_actor || !mapper) {
        _actor = nullptr;
        return;
    }
    mapper->SetInputData(_polyData);
    _actor->SetMapper(mapper);
    _actor->GetProperty()->SetAmbient(Ambient);
    _actor->GetProperty()->SetDiffuse(Diffuse);
    _actor->GetProperty()->SetSpecular(0.0);
    _actor->GetProperty()->BackfaceCullingOn(); // else slivers of far slopes show as dark specks on the ridges
    if (_textureImage) {
        _actor->SetTexture(textureOf(_textureImage));
    }
}

bool TORVTerrainFile::contains(const TORVCoordinate& location) const
{
    return location.getLat() >= _latitude && location.getLat() < _latitude + 1.0 &&
           eastOf(_longitude, location.getLon()) < 1.0;
}

double TORVTerrainFile::getElevationAtLocation(const TORVCoordinate& location) const
{
    if (!_polyData || !contains(location)) {
        return 0.0;
    }
    const vtkIdType count = _polyData->GetNumberOfPoints();
    const auto side = static_cast<vtkIdType>(std::sqrt(static_cast<double>(count)));
    const auto column = static_cast<vtkIdType>(std::floor(eastOf(_longitude, location.getLon()) * double(side)));
    const auto row = static_cast<vtkIdType>(std::floor((location.getLat() - _latitude) * double(side)));
    const vtkIdType index = row * side + column;
    if (index < 0 || index >= count) {
        return 0.0;
    }
    double point[3] = {};
    _polyData->GetPoint(index, point);
    return point[2];
}

void TORVTerrainFile::log(Say say, const QString& text)
{
    if (_isLogHeld) {
        _heldLines.emplace_back(say, text);
        return;
    }
    (TORVLog::Instance()->*say)(text);
}

void TORVTerrainFile::releaseLog()
{
    _isLogHeld = false;
    for (const Line& line : _heldLines) {
        log(line.first, line.second);
    }
    _heldLines.clear();
}

void TORVTerrainFile::printDebug() const
{
    TORVLog* const log = TORVLog::Instance();
    log->logDebug(QLatin1String("TORVTerrainFile: ") + getBlockName());
    log->logDebug(QLatin1String("path=") + _path);
    log->logDebug(QLatin1String("cachePath=") + _cachePath);
    log->logDebug(QStringLiteral("corner=(%1, %2)").arg(_latitude).arg(_longitude));
    log->logDebug(QStringLiteral("step=(%1, %2)").arg(_latitudeStep).arg(_longitudeStep));
    log->logDebug(QStringLiteral("points=(%1, %2)").arg(_latitudePoints).arg(_longitudePoints));
    log->logDebug(QLatin1String("loaded=") + QLatin1String(isLoaded() ? "yes" : "no"));
}
