#include "visualization/TORV3DTerrainElement.h"

#include "datalib/TORVTerrainFile.h"
#include "datalib/TORVTerrainSet.h"
#include "utils/TORVDisplayMode.h"
#include "visualization/TORVSceneStyle.h"
#include "visualization/TORVTerrainActor.h"
#include "visualization/TORVTerrainMesh.h"

#include <vtkAppendPolyData.h>
#include <vtkAssembly.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>

#include <cassert>
#include <vector>

namespace
{

constexpr double Ambient = 0.3;
constexpr double Diffuse = 1.0;

// The picture's colours are multiplied by it.
void applyTint(vtkProperty* property, bool night)
{
    const TORVSceneStyle style(QStringLiteral("TERRAIN3D"), night);
    property->SetColor(style.color("tint", {1.0, 1.0, 1.0}).data());
}

vtkSmartPointer<TORVTerrainActor> makeActor(const TORVTerrainFile& block, vtkProperty* property)
{
    auto actor = vtkSmartPointer<TORVTerrainActor>::New();
    actor->SetMesh(block.getPolyData());
    actor->SetPicture(block.getTextureImage());
    actor->SetProperty(property);
    return actor;
}

bool isSea(const TORVTerrainFile& block)
{
    return block.getType() == TORVTerrainFile::EMPTY && TORVTerrainMesh::isLevel(block.getPolyData());
}

// Blocks without data look alike everywhere. As one they cost one call, not a hundred.
vtkSmartPointer<vtkActor> makeSea(const std::vector<TORVTerrainSet::BlockPtr>& blocks, vtkProperty* property)
{
    vtkNew<vtkAppendPolyData> all;
    for (const TORVTerrainSet::BlockPtr& block : blocks) {
        vtkNew<vtkPolyData> own;
        own->ShallowCopy(block->getPolyData());
        all->AddInputData(TORVTerrainMesh::thinned(own, TORVTerrainMesh::LevelFactor));
    }
    all->Update();
    auto actor = vtkSmartPointer<TORVTerrainActor>::New();
    actor->SetMesh(all->GetOutput());
    actor->SetPicture(blocks.front()->getTextureImage());
    actor->SetProperty(property);
    return actor;
}

vtkSmartPointer<vtkAssembly> makeAssembly(const TORVTerrainSet& set, vtkProperty* property)
{
    auto assembly = vtkSmartPointer<vtkAssembly>::New();
    std::vector<TORVTerrainSet::BlockPtr> sea;
    for (const TORVTerrainSet::BlockPtr& block : set.getBlocks()) {
        if (!block->isLoaded()) {
            continue;
        }
        if (isSea(*block)) {
            sea.push_back(block);
        } else {
            assembly->AddPart(makeActor(*block, property));
        }
    }
    if (!sea.empty()) {
        assembly->AddPart(makeSea(sea, property));
    }
    return assembly;
}

} // namespace

TORV3DTerrainElement::TORV3DTerrainElement(TORVVisualGroup* parent, int id)
    : TORVLayerElement(parent, id, "TORV3DTerrainElement")
{
}

TORV3DTerrainElement::~TORV3DTerrainElement() = default;

void TORV3DTerrainElement::invalidate()
{
    TORVLayerElement::invalidate();
    _property = nullptr;
}

void TORV3DTerrainElement::restyle()
{
    if (_property) {
        applyTint(_property, TORVDisplayMode::isNight());
    }
}

void TORV3DTerrainElement::rebuild(const std::atomic<bool>& abort)
{
    createVTK(abort);
}

void TORV3DTerrainElement::createVTK(const std::atomic<bool>& abort)
{
    assert(_params);
    assert(_params->getTerrainSet());
    _prop = nullptr;
    _property = nullptr;
    const TORVTerrainSet& set = *_params->getTerrainSet();
    set.loadFiles(abort);
    if (abort) {
        TORVLog::Instance()->logDebug(QStringLiteral("TORV3DTerrainElement::createVTK(): ABORTED!"));
        return;
    }
    _property = vtkSmartPointer<vtkProperty>::New();
    _property->SetAmbient(Ambient);
    _property->SetDiffuse(Diffuse);
    _property->SetSpecular(0.0);
    _property->BackfaceCullingOn(); // else slivers of far slopes show as dark specks on the ridges
    applyTint(_property, TORVDisplayMode::isNight());
    _prop = makeAssembly(set, _property);
}
