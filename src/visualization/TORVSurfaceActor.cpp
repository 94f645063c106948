#include "visualization/TORVSurfaceActor.h"

#include "visualization/TORVFramePacer.h"
#include "visualization/TORVMatt.h"
#include "visualization/TORVVolumePath.h"

#include <vtkObjectFactory.h>
#include <vtkProperty.h>

TORVSurfaceActor* TORVSurfaceActor::New()
{
    VTK_STANDARD_NEW_BODY(TORVSurfaceActor);
}

TORVSurfaceActor::TORVSurfaceActor()
{
    TORVMatt::apply(this);
}

TORVSurfaceActor::~TORVSurfaceActor() = default;

int TORVSurfaceActor::RenderOpaqueGeometry(vtkViewport* viewport)
{
    chooseFaces(viewport);
    return vtkOpenGLActor::RenderOpaqueGeometry(viewport);
}

int TORVSurfaceActor::RenderTranslucentPolygonalGeometry(vtkViewport* viewport)
{
    chooseFaces(viewport);
    return vtkOpenGLActor::RenderTranslucentPolygonalGeometry(viewport);
}

void TORVSurfaceActor::chooseFaces(vtkViewport* viewport)
{
    GetProperty()->SetBackfaceCulling(TORVVolumePath::isSoftware() && TORVFramePacer::isQuick(viewport));
}
