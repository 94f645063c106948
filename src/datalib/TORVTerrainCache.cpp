#include "datalib/TORVTerrainCache.h"

#include "datalib/TORVTerrainMeshLayout.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QMutex>
#include <QMutexLocker>
#include <QtEndian>

#include <boost/crc.hpp>

#include <vtkCallbackCommand.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPNGReader.h>
#include <vtkPNGWriter.h>
#include <vtkPolyData.h>
#include <vtkPolyDataReader.h>
#include <vtkPolyDataWriter.h>
#include <vtkUnsignedCharArray.h>

#include <atomic>
#include <cstdio>

namespace
{

// Both files are smaller by far; a larger one is not ours and is not read at all.
constexpr qint64 MaxFileSize = qint64(4) * 1024 * 1024;

const QByteArray VersionLine = QByteArrayLiteral("# vtk DataFile Version 5.1\n");
const QByteArray TitlePrefix = QByteArrayLiteral("terrain mesh ");

const QByteArray PngSignature = QByteArrayLiteral("\x89PNG\r\n\x1A\n");
constexpr int PngHeadSize = 8; // length and type of a chunk
constexpr int PngCrcSize = 4;

// Failures are told by the callers' return values; VTK would write them to the console as well.
class Silence final
{
public:
    explicit Silence(vtkObject* object)
    {
        _command->SetCallback(note);
        _command->SetClientData(this);
        object->AddObserver(vtkCommand::ErrorEvent, _command);
        object->AddObserver(vtkCommand::WarningEvent, _command);
    }

    bool isBroken() const { return _isBroken; }

private:
    static void note(vtkObject*, unsigned long, void* self, void*) { static_cast<Silence*>(self)->_isBroken = true; }

    vtkNew<vtkCallbackCommand> _command;
    bool _isBroken = false;
};

QByteArray readWhole(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.isSequential() || file.size() > MaxFileSize) {
        return {};
    }
    return file.read(MaxFileSize);
}

QString besideName(const QString& path)
{
    static std::atomic<unsigned int> serial{0};
    return QStringLiteral("%1.%2-%3.tmp").arg(path).arg(QCoreApplication::applicationPid()).arg(++serial);
}

bool writeFile(const QString& path, const QByteArray& contents)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        return false;
    }
    const bool isWritten = file.write(contents) == contents.size() && file.flush();
    file.close();
    return isWritten && file.error() == QFileDevice::NoError;
}

bool replaceFile(const QString& path, const QByteArray& contents)
{
    const QString beside = besideName(path);
    // Qt's rename refuses to replace a file.
    if (writeFile(beside, contents) &&
        std::rename(QFile::encodeName(beside).constData(), QFile::encodeName(path).constData()) == 0) {
        return true;
    }
    QFile::remove(beside);
    return false;
}

uint32_t bigEndian(const QByteArray& bytes, int at)
{
    return qFromBigEndian<quint32>(bytes.constData() + at);
}

// The size of the chunk that begins at `at`, 0 if it's not whole or has suffered.
int chunkSize(const QByteArray& png, int at)
{
    const qint64 left = qint64(png.size()) - at;
    if (left < PngHeadSize + PngCrcSize) {
        return 0;
    }
    const uint32_t length = bigEndian(png, at);
    if (length > left - PngHeadSize - PngCrcSize) {
        return 0;
    }
    boost::crc_32_type crc; // of type and data
    crc.process_bytes(png.constData() + at + 4, 4 + size_t(length));
    const int end = at + PngHeadSize + static_cast<int>(length);
    return crc.checksum() == bigEndian(png, end) ? end + PngCrcSize - at : 0;
}

bool isExpectedHead(const QByteArray& png, int at)
{
    static const QByteArray format = QByteArrayLiteral("\x08\x02\x00\x00\x00"); // 8 bits, RGB, not interlaced
    constexpr int side = TORVTerrainCache::PictureSide;
    return bigEndian(png, at) == 13 && png.mid(at + 4, 4) == "IHDR" && bigEndian(png, at + 8) == side &&
           bigEndian(png, at + 12) == side && png.mid(at + 16, format.size()) == format;
}

// A head, pixels, an end, and nothing beside that.
bool isExpectedPicture(const QByteArray& png)
{
    if (!png.startsWith(PngSignature)) {
        return false;
    }
    int at = PngSignature.size();
    QByteArray last;
    for (int count = 0; last != "IEND"; ++count) {
        const int size = chunkSize(png, at);
        if (size == 0) {
            return false;
        }
        last = png.mid(at + 4, 4);
        const bool isHead = count == 0;
        if (isHead ? !isExpectedHead(png, at) : last != "IDAT" && last != "IEND") {
            return false;
        }
        at += size;
    }
    return at == png.size();
}

} // namespace

bool TORVTerrainCache::createDirectory(const QString& path)
{
    static QMutex mutex; // of several blocks that find it missing, one makes it
    const QMutexLocker lock(&mutex);
    return !path.isEmpty() && !QDir(path).exists() && QDir().mkpath(path);
}

QByteArray TORVTerrainCache::checksummedTitle(const QByteArray& body)
{
    return VersionLine + TitlePrefix + QCryptographicHash::hash(body, QCryptographicHash::Sha1).toHex() + '\n';
}

QByteArray TORVTerrainCache::fromMesh(vtkPolyData* mesh)
{
    vtkNew<vtkPolyDataWriter> writer;
    const Silence silence(writer);
    writer->SetInputData(mesh);
    writer->SetFileTypeToBinary();
    writer->WriteToOutputStringOn();
    if (writer->Write() == 0 || silence.isBroken()) {
        return {};
    }
    const QByteArray written(writer->GetOutputString(), static_cast<int>(writer->GetOutputStringLength()));
    const int titleEnd = written.indexOf('\n', VersionLine.size());
    if (!written.startsWith(VersionLine) || titleEnd < 0) {
        return {};
    }
    const QByteArray body = written.mid(titleEnd + 1);
    return checksummedTitle(body) + body;
}

QByteArray TORVTerrainCache::fromPicture(vtkImageData* picture)
{
    vtkNew<vtkPNGWriter> writer;
    const Silence silence(writer);
    writer->SetInputData(picture);
    writer->WriteToMemoryOn();
    writer->Write();
    vtkUnsignedCharArray* const result = writer->GetResult();
    if (result == nullptr || silence.isBroken()) {
        return {};
    }
    return {reinterpret_cast<const char*>(result->GetPointer(0)), static_cast<int>(result->GetNumberOfValues())};
}

vtkSmartPointer<vtkPolyData> TORVTerrainCache::toMesh(const QByteArray& contents)
{
    const int titleEnd = contents.indexOf('\n', VersionLine.size());
    if (titleEnd < 0) {
        return nullptr;
    }
    const QByteArray body = contents.mid(titleEnd + 1);
    if (contents.left(titleEnd + 1) != checksummedTitle(body) || !TORVTerrainMeshLayout(body).isExpected()) {
        return nullptr;
    }
    vtkNew<vtkPolyDataReader> reader;
    const Silence silence(reader);
    reader->ReadFromInputStringOn();
    reader->SetBinaryInputString(contents.constData(), contents.size());
    reader->Update();
    const vtkSmartPointer<vtkPolyData> mesh = reader->GetOutput();
    return silence.isBroken() || mesh->GetNumberOfPoints() != vtkIdType(MeshSide) * MeshSide ? nullptr : mesh;
}

vtkSmartPointer<vtkImageData> TORVTerrainCache::toPicture(const QByteArray& contents)
{
    if (!isExpectedPicture(contents)) {
        return nullptr;
    }
    vtkNew<vtkPNGReader> reader;
    const Silence silence(reader);
    reader->SetMemoryBuffer(contents.constData());
    reader->SetMemoryBufferLength(contents.size());
    reader->Update();
    const vtkSmartPointer<vtkImageData> picture = reader->GetOutput();
    return silence.isBroken() || picture->GetNumberOfPoints() != vtkIdType(PictureSide) * PictureSide ? nullptr
                                                                                                      : picture;
}

bool TORVTerrainCache::write(const QString& meshFile, const QByteArray& mesh, const QByteArray& picture)
{
    return !mesh.isEmpty() && !picture.isEmpty() && replaceFile(pictureFile(meshFile), picture) &&
           replaceFile(meshFile, mesh);
}

std::optional<TORVTerrainCache::Pair> TORVTerrainCache::read(const QString& meshFile)
{
    Pair pair;
    pair.mesh = toMesh(readWhole(meshFile));
    if (!pair.mesh) {
        return std::nullopt;
    }
    if (QFile::exists(pictureFile(meshFile))) {
        pair.picture = toPicture(readWhole(pictureFile(meshFile)));
        if (!pair.picture) {
            return std::nullopt;
        }
    }
    return pair;
}
