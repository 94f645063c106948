#include "visualization/TORVMatt.h"

#include <vtkActor.h>
#include <vtkShaderProperty.h>

void TORVMatt::apply(vtkActor* actor)
{
    actor->GetShaderProperty()->AddFragmentShaderReplacement("sf = sign(df)*pow(", false, "sf = 0.0; //", true);
}
