#pragma once

#include <QtGlobal>

#include <set>

class vtkAbstractArray;
class vtkActor;
class vtkCellArray;
class vtkDataObject;
class vtkFieldData;
class vtkPolyData;
class vtkProp;
class vtkPropCollection;

/**
 * Counts the main memory of the data that props draw: meshes, images of volumes, pictures of textures. What several of
 * them share counts once, what a mapper or a texture makes of it for a window not at all.
 *
 * Ownership: holds nothing; what was added must not go before the counting ends.
 *
 * Thread: that of the props.
 */
class TORVSceneMemory final
{
public:
    void add(vtkProp* prop);       ///< with all of its parts; may be null
    void add(vtkDataObject* data); ///< may be null

    qint64 getBytes() const { return _bytes; }

private:
    void addParts(vtkPropCollection* parts);
    void addActor(vtkActor* actor);
    void addMesh(vtkPolyData* mesh);
    void addCells(vtkCellArray* cells);
    void addFields(vtkFieldData* fields);
    void addArray(vtkAbstractArray* array);

    std::set<const vtkAbstractArray*> _known;
    qint64 _bytes = 0;
};
