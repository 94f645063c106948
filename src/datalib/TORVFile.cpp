#include "datalib/TORVFile.h"

#include "utils/TORVLog.h"
#include "utils/TORVPoint3D.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cassert>
#include <cerrno>
#include <limits>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr int16_t StructureId = 27;
constexpr int16_t ConfigStructureId = 26;
constexpr int IdentifiersEnd = 14; // the bytes that hold both
constexpr uint32_t DefaultEarthRadius_cm = 637100000;
constexpr double MetresPerCentimetre = 0.01;

// Texts made once: a tree of a hundred thousand files shares them.
struct CodeText
{
    int code;
    QString text;
};

const CodeText Products[] = {{1, QStringLiteral("PPI")},
                             {3, QStringLiteral("CAPPI")},
                             {10, QStringLiteral("VIL")},
                             {16, QStringLiteral("MAX")},
                             {32, QStringLiteral("SRI")}};
const CodeText Configurations[] = {{2, QStringLiteral("Z")},  {9, QStringLiteral("Z")}, {3, QStringLiteral("V")},
                                   {10, QStringLiteral("V")}, {4, QStringLiteral("W")}, {11, QStringLiteral("W")},
                                   {13, QStringLiteral("R")}};

struct ProjectionName
{
    QString proj;
    QString reader;
};

const ProjectionName Projections[] = {
    {QStringLiteral("aeqd"), QStringLiteral("Azimuthal Equidistant")},
    {QStringLiteral("merc"), QStringLiteral("Mercator")},
};

template <std::size_t Size>
QString textOf(const CodeText (&table)[Size], int code, const QString& otherwise)
{
    for (const CodeText& row : table) {
        if (row.code == code) {
            return row.text;
        }
    }
    return otherwise;
}

bool fileIsValidProductFile(const TORVProductHeader& phd)
{
    return phd.structureId() == StructureId && phd.configStructureId() == ConfigStructureId;
}

// In double the product of three ints can't overflow, and is exact as far as an int reaches.
double itemCount(const TORVProductHeader& phd)
{
    return static_cast<double>(phd.xPoints()) * phd.yPoints() * phd.zPoints();
}

int limitedToInt(double value)
{
    constexpr double Smallest = std::numeric_limits<int>::min();
    constexpr double Largest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(value, Smallest, Largest));
}

int getItemCountFromProductHeader(const TORVProductHeader& phd)
{
    assert(fileIsValidProductFile(phd));
    return limitedToInt(itemCount(phd));
}

int getDataSizeFromProductHeader(const TORVProductHeader& phd)
{
    assert(fileIsValidProductFile(phd));
    return limitedToInt(static_cast<double>(phd.totalBytes()) - TORVProductHeader::Size);
}

int getTotalFileSizeFromProductHeader(const TORVProductHeader& phd)
{
    assert(fileIsValidProductFile(phd));
    return phd.totalBytes();
}

QString siteFromProductHeader(const TORVProductHeader& phd)
{
    assert(fileIsValidProductFile(phd));
    return phd.siteName().simplified().toUpper();
}

double earthRadius(const TORVProductHeader& phd)
{
    return MetresPerCentimetre * (phd.earthRadius() == 0 ? DefaultEarthRadius_cm : phd.earthRadius());
}

double earthInvFlattening(const TORVProductHeader& phd)
{
    constexpr double Sphere = std::numeric_limits<float>::max();
    return phd.earthInvFlattening() == 0 ? Sphere : phd.earthInvFlattening() * 0.000001;
}

// Most paths are clean already: a directory's own with a name behind it.
QString absolutePath(const QString& path)
{
    const bool isClean =
        path.startsWith(QLatin1Char('/')) && !path.contains(QLatin1String("/.")) && !path.contains(QLatin1String("//"));
    return isClean ? path : QFileInfo(path).absoluteFilePath();
}

double extent(int points, int scale_cm)
{
    return (static_cast<double>(points) - 1.0) * scale_cm * MetresPerCentimetre;
}

// POSIX calls in place of QFile: a directory of a hundred thousand products is opened file by file.
class Descriptor final
{
public:
    // Without O_NONBLOCK a named pipe in the directory would hold its reader for ever.
    explicit Descriptor(const QByteArray& path) : _fd(::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}

    ~Descriptor()
    {
        if (isOpen()) {
            ::close(_fd);
        }
    }

    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool isOpen() const { return _fd >= 0; }

    bool stat(struct stat& result) const { return ::fstat(_fd, &result) == 0; }

    // Bytes read, fewer than `size` at the end of the file, or -1.
    int read(char* to, int size) const
    {
        int got = 0;
        while (got < size) {
            const ssize_t bytes = ::pread(_fd, to + got, static_cast<size_t>(size - got), got);
            if (bytes < 0 && errno == EINTR) {
                continue;
            }
            if (bytes < 0) {
                return -1;
            }
            if (bytes == 0) {
                break;
            }
            got += static_cast<int>(bytes);
        }
        return got;
    }

private:
    int _fd;
};

} // namespace

TORVFile::TORVFile(const QString& path) : TORVFile(path, Trust::HEADER_AS_IT_IS) {}

TORVFile::CPtr TORVFile::openChecked(const QString& path)
{
    return CPtr(new TORVFile(path, Trust::HEADER_UNSEEN));
}

TORVFile::TORVFile(const QString& path, Trust trust) : _path(absolutePath(path))
{
    _status = read(path);
    if (_status != FILE_OK) {
        return;
    }
    const QString refusal = trust == Trust::HEADER_UNSEEN ? _header.whyRefused() : QString();
    if (!refusal.isEmpty()) {
        TORVLog::Instance()->logWarning(QStringLiteral("Invalid product file, %1: %2").arg(refusal, path));
        _status = FILE_INVALID;
        return;
    }
    makeProjection();
}

TORVFile::~TORVFile() = default;

QString TORVFile::directory() const
{
    return QFileInfo(_path).absolutePath();
}

TORVFile::Status TORVFile::read(const QString& path)
{
    TORVLog* const log = TORVLog::Instance();
    const Descriptor file(QFile::encodeName(path));
    if (!file.isOpen() && !QFileInfo::exists(path)) {
        log->logDebug(QLatin1String("TORVFile::TORVFile(): file does not exist: ") + path);
        log->logError(QLatin1String("TORVFile does not exist: ") + path);
        return FILE_MISSING;
    }
    struct stat state = {};
    const bool isKnown = file.isOpen() && file.stat(state);
    if (!file.isOpen() || (isKnown && S_ISDIR(state.st_mode))) {
        log->logDebug(QLatin1String("TORVFile::TORVFile(): Cannot open file: ") + path);
        log->logError(QLatin1String("Cannot open TORVfile: ") + path);
        return FILE_OPEN_FAILED;
    }
    if (!isKnown || (state.st_nlink == 0 && !QFileInfo::exists(path))) {
        return FILE_MISSING;
    }
    const int bytesRead = file.read(_header.data(), TORVProductHeader::Size);
    return classify(static_cast<qint32>(state.st_size), bytesRead);
}

TORVFile::Status TORVFile::classify(qint32 length, int bytesRead) const
{
    TORVLog* const log = TORVLog::Instance();
    if (bytesRead >= IdentifiersEnd && fileIsValidProductFile(_header)) {
        if (length >= _header.totalBytes()) {
            return FILE_OK;
        }
        log->logDebug(QLatin1String("DATA FILE SIZE SMALLER THAN SHOULD: ") + directory());
        log->logDebug(QStringLiteral("Expected size: %1").arg(_header.totalBytes()));
        log->logDebug(QStringLiteral("Real size: %1").arg(length));
        return FILE_INCOMPLETE;
    }
    if (length == 0 || bytesRead < TORVProductHeader::Size) {
        return FILE_NO_DATA;
    }
    log->logDebug(QLatin1String("DATA LOOKS INVALID: ") + directory());
    log->logDebug(QStringLiteral("File size: %1").arg(length));
    return FILE_INVALID;
}

void TORVFile::makeProjection()
{
    _projection = TORVGeoProjection::shared(getProjectionTypeProj4(), getSiteCoordinates(), getEarthRadius(),
                                            getEarthInvFlattening());
}

QString TORVFile::getSite() const
{
    return siteFromProductHeader(_header);
}

QString TORVFile::getProduct() const
{
    return textOf(Products, _header.productType(), QStringLiteral(""));
}

QString TORVFile::getConfiguration() const
{
    return textOf(Configurations, _header.dataType(), QString());
}

QString TORVFile::getTime() const
{
    return getName().mid(3, 12).toUpper();
}

QString TORVFile::getPath() const
{
    return _path;
}

QString TORVFile::getName() const
{
    return _path.mid(_path.lastIndexOf(QLatin1Char('/')) + 1);
}

QString TORVFile::getBaseName() const
{
    const QString name = getName();
    return name.left(name.indexOf(QLatin1Char('.')));
}

int TORVFile::getDimensions() const
{
    return _header.zPoints() > 1 ? 3 : 2;
}

double TORVFile::getEarthRadius() const
{
    return earthRadius(_header);
}

double TORVFile::getEarthInvFlattening() const
{
    return earthInvFlattening(_header);
}

double TORVFile::getWidthM() const
{
    return extent(_header.xPoints(), _header.xScale());
}

double TORVFile::getLengthM() const
{
    return extent(_header.yPoints(), _header.yScale());
}

double TORVFile::getHeightM() const
{
    return extent(_header.zPoints(), _header.zScale());
}

int TORVFile::getRadarElevation() const
{
    return _header.radarHeight() + _header.groundElevation();
}

int TORVFile::getGroundElevation() const
{
    return _header.groundElevation();
}

double TORVFile::getPointElevationM(int, int, int z) const
{
    return static_cast<double>(z) * _header.zScale() * MetresPerCentimetre;
}

TORVPoint3D TORVFile::getPointM(double x, double y, double z) const
{
    return {x * _header.xScale() * MetresPerCentimetre, y * _header.yScale() * MetresPerCentimetre,
            z * _header.zScale() * MetresPerCentimetre};
}

TORVDataType TORVFile::getDataType() const
{
    return TORVDataType(_header.dataType(), _header.prf(), _header.prfRatioCode(), _header.wavelength(),
                        _header.nyquistHalvingCode());
}

QDateTime TORVFile::getDataTime() const
{
    const uint32_t seconds = _header.dataSeconds();
    const QDate date(_header.dataYear(), _header.dataMonth(), _header.dataDay());
    const QTime time(static_cast<int>(seconds / 3600), static_cast<int>(seconds / 60 % 60),
                     static_cast<int>(seconds % 60));
    return QDateTime(date, time, Qt::UTC);
}

TORVCoordinate TORVFile::getSiteCoordinates() const
{
    return {_header.siteLatitude(), _header.siteLongitude()};
}

QString TORVFile::getProjectionTypeProj4() const
{
    const std::size_t type = _header.projectionType();
    return type < std::size(Projections) ? Projections[type].proj : QString();
}

QString TORVFile::getProjection() const
{
    const std::size_t type = _header.projectionType();
    return type < std::size(Projections) ? Projections[type].reader : QString();
}

int TORVFile::getItemCount() const
{
    return getItemCountFromProductHeader(_header);
}

int TORVFile::getDataSize() const
{
    return getDataSizeFromProductHeader(_header);
}

int TORVFile::getTotalFileSize() const
{
    return getTotalFileSizeFromProductHeader(_header);
}

int TORVFile::getItemSize() const
{
    assert(fileIsValidProductFile(_header));
    return static_cast<double>(getDataSize()) == itemCount(_header) ? 1 : 2;
}
