// A cached pair of any content must load or be refused, without VTK's readers seeing what they could stumble over. The
// input is a list of changes to the mesh and the picture of a good pair; the mesh's checksum is made to fit again, or
// nothing would be seen behind it. What is in no good file comes by the input as it is.

#include "datalib/TORVTerrainCache.h"
#include "datalib/TORVTerrainFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <boost/make_shared.hpp>

#include <vtkImageData.h>
#include <vtkPolyData.h>

#include <atomic>
#include <cstddef>
#include <cstdint>

namespace
{

constexpr int ChangeHead = 5; // where, in three bytes from 0; how many bytes, in one; what to do, in one

struct GoodPair
{
    GoodPair()
    {
        const QTemporaryDir directory;
        const QString file = directory.filePath(QStringLiteral("block.vtk"));
        TORVTerrainFile block(TORVCoordinate(46.0, 8.0), directory.path());
        block.convertData(boost::make_shared<const TORVGeoProjection>(QStringLiteral("aeqd"), TORVCoordinate(46.0, 8.0),
                                                                      6378137.0, 298.257),
                          file, std::atomic<bool>(false));
        mesh = read(file);
        mesh = mesh.mid(mesh.indexOf("BINARY\n"));
        picture = read(TORVTerrainCache::pictureFile(file));
    }

    static QByteArray read(const QString& path)
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            qFatal("can't read %s", qUtf8Printable(path));
        }
        return file.readAll();
    }

    QByteArray mesh;
    QByteArray picture;
};

int byteAt(const QByteArray& bytes, int at)
{
    return static_cast<unsigned char>(bytes[at]);
}

QByteArray changed(QByteArray good, const QByteArray& changes)
{
    for (int at = 0; at + ChangeHead <= changes.size();) {
        const int place =
            (byteAt(changes, at) << 16 | byteAt(changes, at + 1) << 8 | byteAt(changes, at + 2)) % (good.size() + 1);
        const int length = byteAt(changes, at + 3);
        const QByteArray bytes = changes.mid(at + ChangeHead, length);
        switch (byteAt(changes, at + 4) % 4) {
        case 0:
            good.replace(place, bytes.size(), bytes);
            break;
        case 1:
            good.insert(place, bytes);
            break;
        case 2:
            good.remove(place, length);
            break;
        default:
            good.truncate(place);
        }
        at += ChangeHead + length;
    }
    return good;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    static const GoodPair good;
    const QByteArray input(reinterpret_cast<const char*>(bytes), static_cast<int>(size));
    TORVTerrainCache::toMesh(input);
    TORVTerrainCache::toPicture(input);
    TORVTerrainCache::toPicture(changed(good.picture, input));
    const QByteArray body = changed(good.mesh, input);
    const vtkSmartPointer<vtkPolyData> mesh = TORVTerrainCache::toMesh(TORVTerrainCache::checksummedTitle(body) + body);
    if (mesh) {
        mesh->ComputeBounds();
    }
    return 0;
}
