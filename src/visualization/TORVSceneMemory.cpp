#include "visualization/TORVSceneMemory.h"

#include "visualization/TORV2DLayerActor.h"

#include <vtkAbstractArray.h>
#include <vtkAbstractVolumeMapper.h>
#include <vtkActor.h>
#include <vtkAssembly.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkDataArray.h>
#include <vtkDataSet.h>
#include <vtkFieldData.h>
#include <vtkImageData.h>
#include <vtkMapper.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkProp3DCollection.h>
#include <vtkPropAssembly.h>
#include <vtkPropCollection.h>
#include <vtkTexture.h>
#include <vtkVolume.h>

namespace
{

constexpr qint64 BytesPerKibibyte = 1024; // in which VTK answers

} // namespace

void TORVSceneMemory::add(vtkProp* prop)
{
    if (auto* const all = vtkPropAssembly::SafeDownCast(prop)) {
        addParts(all->GetParts());
    } else if (auto* const assembly = vtkAssembly::SafeDownCast(prop)) {
        addParts(assembly->GetParts());
    } else if (auto* const layer = TORV2DLayerActor::SafeDownCast(prop)) {
        addParts(layer->GetParts());
    } else if (auto* const actor = vtkActor::SafeDownCast(prop)) {
        addActor(actor);
    } else if (auto* const volume = vtkVolume::SafeDownCast(prop)) {
        add(volume->GetMapper() ? volume->GetMapper()->GetDataObjectInput() : nullptr);
    }
}

void TORVSceneMemory::addParts(vtkPropCollection* parts)
{
    vtkCollectionSimpleIterator cursor = nullptr;
    parts->InitTraversal(cursor);
    while (vtkProp* const part = parts->GetNextProp(cursor)) {
        add(part);
    }
}

void TORVSceneMemory::addActor(vtkActor* actor)
{
    if (actor->GetMapper()) {
        add(actor->GetMapper()->GetInputDataObject(0, 0));
    }
    if (actor->GetTexture()) {
        add(actor->GetTexture()->GetInputDataObject(0, 0));
    }
}

void TORVSceneMemory::add(vtkDataObject* data)
{
    auto* const set = vtkDataSet::SafeDownCast(data);
    if (!set) {
        return;
    }
    addFields(set->GetPointData());
    addFields(set->GetCellData());
    if (auto* const mesh = vtkPolyData::SafeDownCast(set)) {
        addMesh(mesh);
    }
}

void TORVSceneMemory::addMesh(vtkPolyData* mesh)
{
    if (mesh->GetPoints()) {
        addArray(mesh->GetPoints()->GetData());
    }
    addCells(mesh->GetVerts());
    addCells(mesh->GetLines());
    addCells(mesh->GetPolys());
    addCells(mesh->GetStrips());
}

// Empty ones are one object that all meshes share.
void TORVSceneMemory::addCells(vtkCellArray* cells)
{
    if (cells->GetNumberOfCells() == 0) {
        return;
    }
    addArray(cells->GetOffsetsArray());
    addArray(cells->GetConnectivityArray());
}

void TORVSceneMemory::addFields(vtkFieldData* fields)
{
    for (int index = 0; index < fields->GetNumberOfArrays(); ++index) {
        addArray(fields->GetAbstractArray(index));
    }
}

void TORVSceneMemory::addArray(vtkAbstractArray* array)
{
    if (array && _known.insert(array).second) {
        _bytes += static_cast<qint64>(array->GetActualMemorySize()) * BytesPerKibibyte;
    }
}
