#pragma once

#include "datalib/TORVDataType.h"
#include "datalib/TORVProductHeader.h"
#include "utils/TORVCoordinate.h"
#include "utils/TORVGeoProjection.h"

#include <QDateTime>
#include <QString>

#include <boost/shared_ptr.hpp>

struct TORVPoint3D;

/**
 * One product file, seen through its header. The constructor opens the file, copies the header, classifies the file and
 * closes it again; the data block is never read here (`TORVProductData` does that).
 *
 * Immutable: a file that grows, changes or vanishes later doesn't change its object.
 *
 * Thread: made on any thread, then shared by all.
 */
class TORVFile
{
public:
    using Ptr = boost::shared_ptr<TORVFile>;
    using CPtr = boost::shared_ptr<const TORVFile>;

    /// The numbers are seen by other programs of the system; 5 is not in use.
    enum Status : int
    {
        FILE_OK = 0,         ///< valid and complete
        FILE_MISSING = 1,    ///< does not exist, or vanished while it was being opened
        FILE_INCOMPLETE = 2, ///< shorter than its header says
        FILE_NO_DATA = 3,    ///< empty, or too short to hold a header
        FILE_INVALID = 4,    ///< not a product, or one that can't be meant
        FILE_OPEN_FAILED = 6 ///< there, but it can't be opened
    };

    /**
     * Takes the header as it is: a complete file whose header has no usable projection stops the process. For files
     * from a directory use `openChecked`.
     */
    explicit TORVFile(const QString& path);

    /// The same for a file that nobody has looked at yet: a complete file whose header can't be meant becomes
    /// `FILE_INVALID`, with one warning that says why.
    static CPtr openChecked(const QString& path);

    virtual ~TORVFile();
    virtual QString getSite() const;          ///< simplified and in upper case
    virtual QString getProduct() const;       ///< "PPI", "CAPPI", "VIL", "MAX", "SRI" or empty
    virtual QString getConfiguration() const; ///< "Z", "V", "W", "R" or null
    virtual QString getTime() const;     ///< the file's key in the tree: characters 4 to 15 of its name, upper case
    virtual QString getPath() const;     ///< absolute
    virtual QString getName() const;     ///< with extension
    virtual QString getBaseName() const; ///< up to the first dot

    TORVFile(const TORVFile&) = delete;
    TORVFile& operator=(const TORVFile&) = delete;

    bool isValid() const { return _status == FILE_OK; }
    int getStatus() const { return _status; }

    /// 3 with more than one level, else 2.
    int getDimensions() const;
    int getXPoints() const { return _header.xPoints(); }
    int getYPoints() const { return _header.yPoints(); }
    int getZPoints() const { return _header.zPoints(); }

    /// Centimetres between two grid points.
    int getXScale() const { return _header.xScale(); }
    int getYScale() const { return _header.yScale(); }
    int getZScale() const { return _header.zScale(); }

    /// Thousandths of a grid step, counted from the grid's first point.
    int getXRadar() const { return _header.xRadar(); }
    int getYRadar() const { return _header.yRadar(); }

    /// Thousandths of a metre.
    int getZRadar() const { return _header.zRadar(); }
    int getHeaderSize() const { return TORVProductHeader::Size; }
    double getEarthRadius() const;        ///< metres
    double getEarthInvFlattening() const; ///< the largest float for a sphere

    /// Metres from the first grid point to the last.
    double getWidthM() const;
    double getLengthM() const;
    double getHeightM() const;

    int getNumberElevationAngles() const { return 1; }
    int getRadarElevation() const;  ///< metres above sea level, of the antenna
    int getGroundElevation() const; ///< metres above sea level, at its foot
    int getRawType() const { return _header.dataType(); }

    /// Metres above the grid's first level; x and y play no part.
    double getPointElevationM(int x, int y, int z) const;
    /// Grid steps to metres.
    TORVPoint3D getPointM(double x, double y, double z) const;

    TORVDataType getDataType() const;
    QDateTime getDataTime() const; ///< UTC
    TORVCoordinate getSiteCoordinates() const;
    QString getProjectionTypeProj4() const;                                  ///< "aeqd", "merc" or null
    QString getProjection() const;                                           ///< the same for a reader
    TORVGeoProjection::CPtr getGeoProjection() const { return _projection; } ///< only where the status is FILE_OK

    /// Products of header values that an int can't hold are given as the largest int. All four, like getSite, are asked
    /// of real products only: without the format's two identifiers they stop the process.
    int getItemCount() const;
    int getDataSize() const;
    int getTotalFileSize() const;
    /// Bytes of one item, 1 or 2.
    int getItemSize() const;

private:
    enum class Trust
    {
        HEADER_AS_IT_IS,
        HEADER_UNSEEN
    };
    TORVFile(const QString& path, Trust trust);

    QString directory() const;
    Status read(const QString& path);
    Status classify(qint32 length, int bytesRead) const; // bytesRead is -1 where the read failed
    void makeProjection();

    QString _path; // absolute; a text and no QFileInfo, whose const functions write to a cache that threads would share
    TORVProductHeader _header;
    Status _status = FILE_MISSING;
    TORVGeoProjection::CPtr _projection;
};
