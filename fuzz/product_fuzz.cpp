// A product file of any content must open to a status, answer every question that its status allows, and load or refuse
// its data, without an assertion and without a byte read past a buffer.

#include "datalib/TORVFile.h"
#include "datalib/TORVProductData.h"
#include "utils/TORVPoint3D.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>

namespace
{

QString inputFile(const uint8_t* bytes, size_t size)
{
    static const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("FUZ260714120000.CAPZ"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        qFatal("can't write %s", qUtf8Printable(path));
    }
    file.write(reinterpret_cast<const char*>(bytes), static_cast<qint64>(size));
    return path;
}

void askAlways(const TORVFile& file)
{
    file.getDataTime().toString();
    file.getSiteCoordinates().toDecimalString();
    file.getProjection();
    file.getEarthInvFlattening();
    file.getPointM(file.getXPoints(), file.getYPoints(), file.getZPoints());
    file.getPointElevationM(0, 0, file.getZPoints());
    file.getRadarElevation();
    file.getDataType().getDisplayStr(1);
}

void askProduct(const TORVFile& file)
{
    file.getSite();
    file.getItemCount();
    file.getItemSize();
    const TORVPoint3D centre = file.getGeoProjection()->projectFromLatLon(file.getSiteCoordinates());
    file.getGeoProjection()->projectToLatLon(centre);
    const TORVDataType type = file.getDataType();
    type.displayToAbsoluteValue(type.getMinDisplayValue());
    type.displayToAbsoluteValue(type.getMaxDisplayValue());
    const TORVProductData::CPtr data = TORVProductData::read(file);
    if (data) {
        data->item(0);
        data->item(data->itemCount() - 1);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const TORVFile::CPtr file = TORVFile::openChecked(inputFile(bytes, size));
    askAlways(*file);
    if (file->isValid()) {
        askProduct(*file);
    }
    return 0;
}
