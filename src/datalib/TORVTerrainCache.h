#pragma once

#include <QByteArray>
#include <QString>

#include <vtkSmartPointer.h>

#include <optional>

class vtkImageData;
class vtkPolyData;

/**
 * The pair of files that a block of ground is kept in: a mesh in VTK's legacy format, version 5, binary (VTK User's
 * Guide, "VTK File Formats"), and a picture in PNG under the same name followed by ".png".
 *
 * Writing: the picture goes first, each file beside its place under a name with the process in it, and is then renamed.
 * So a mesh that is there has its picture, and neither a crash, a full disk nor a second viewer leaves half a file. The
 * title of the mesh holds a checksum of all that follows it.
 *
 * Reading: files are taken for hostile. A mesh passes only if it has the very layout that is written here, with all
 * counts held against the file's size, all indices inside the mesh, finite positions and the right checksum; a picture
 * only with the right size, pixel format and checksums. VTK's readers never see anything else.
 *
 * Thread: any thread.
 */
class TORVTerrainCache final
{
public:
    static constexpr int MeshSide = 61;     ///< points along each edge
    static constexpr int PictureSide = 256; ///< pixels along each edge

    struct Pair
    {
        vtkSmartPointer<vtkPolyData> mesh;
        vtkSmartPointer<vtkImageData> picture; ///< null where there is no file for it
    };

    TORVTerrainCache() = delete;

    /// @return whether the directory was missing and has been made.
    static bool createDirectory(const QString& path);

    static QString pictureFile(const QString& meshFile) { return meshFile + QLatin1String(".png"); }

    /// File contents; empty if VTK can't make them.
    static QByteArray fromMesh(vtkPolyData* mesh);
    static QByteArray fromPicture(vtkImageData* picture);

    /// Null for contents that were not written here or have suffered since.
    static vtkSmartPointer<vtkPolyData> toMesh(const QByteArray& contents);
    static vtkSmartPointer<vtkImageData> toPicture(const QByteArray& contents);

    /// The part of a mesh's contents that the checksum is of.
    static QByteArray checksummedTitle(const QByteArray& body);

    /// @return false where either could not be written; what was there before then stays usable.
    static bool write(const QString& meshFile, const QByteArray& mesh, const QByteArray& picture);

    /// Nothing if the mesh, or a picture that is there, can't be read.
    static std::optional<Pair> read(const QString& meshFile);
};
