#include "visualization/TORVSceneRenderer.h"

#include <vtkDepthPeelingPass.h>
#include <vtkNew.h>
#include <vtkObjectFactory.h>
#include <vtkTranslucentPass.h>

TORVSceneRenderer* TORVSceneRenderer::New()
{
    VTK_STANDARD_NEW_BODY(TORVSceneRenderer);
}

// The base class makes a pass of its own choice where there is none, and releases it.
TORVSceneRenderer::TORVSceneRenderer()
{
    vtkNew<vtkTranslucentPass> layer;
    DepthPeelingPass = vtkDepthPeelingPass::New();
    DepthPeelingPass->SetTranslucentPass(layer);
}

TORVSceneRenderer::~TORVSceneRenderer() = default;
