#include "visualization/TORV3DTerrainElement.h"

#include "datalib/TORVTerrainFile.h"
#include "datalib/TORVTerrainSet.h"
#include "utils/TORVDisplayMode.h"
#include "visualization/TORVSceneStyle.h"
#include "visualization/TORVTerrainActor.h"

#include <vtkAssembly.h>
#include <vtkNew.h>
#include <vtkProperty.h>

#include <cassert>

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
    vtkNew<vtkAssembly> assembly;
    for (const TORVTerrainSet::BlockPtr& block : set.getBlocks()) {
        if (block->isLoaded()) {
            assembly->AddPart(makeActor(*block, _property));
        }
    }
    _prop = assembly;
}
