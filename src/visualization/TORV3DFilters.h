#pragma once

#include "datalib/TORVFile.h"
#include "settings/TORVLayerParameters.h"

#include <vtkImageData.h>
#include <vtkSmartPointer.h>

#include <atomic>

class vtkFlyingEdges3D;
class vtkMapper;
class vtkScalarsToColors;
class vtkVolumeProperty;

/*
 * The steps from a product file to what is drawn of it. All work in the product's stored integers; display values and
 * percentages are turned into them here and are brought into the data type's range first.
 *
 * Thread: any, none of the objects in use elsewhere.
 */

/// The stored value of a display value from settings: limited to what the type can hold; NaN counts as its minimum.
unsigned int storedValue(const TORVDataType& type, double display);

/**
 * Reads a product and makes the image that is drawn of it (`TORVVolumeFilter`).
 * @return null, and the reason in the log and the history, if the file can't be read as its header says; null without
 *         a word if `abort` was set
 */
vtkSmartPointer<vtkImageData> vtk_3D_data_create(const TORVFile::CPtr& dataFile, int shrinkH, int shrinkV,
                                                 double smooth, const std::atomic<bool>& abort);

/**
 * What surfaces are drawn through: `image` itself, or for velocities a copy in which no data stands at rest. From 0,
 * the stored value of no data, to outbound wind lie all inbound speeds, and surfaces of these would wrap every edge of
 * an outbound echo.
 */
vtkSmartPointer<vtkImageData> contouredImage(vtkImageData* image, const TORVDataType& type);

/// The iso values of the list, the highest first.
void vtk_3D_surface_filter_update(vtkFlyingEdges3D* filter, const TORVProductSettings::SurfaceParContainer& surfaces,
                                  const TORVDataType& type);

/// Colour and opacity of each surface: a table from stored values to those of the surface that is nearest.
void vtk_lut_for_surfaces(vtkMapper* mapper, const TORVProductSettings::SurfaceParContainer& surfaces,
                          vtkScalarsToColors* colours, const TORVDataType& type);

/// Colours and opacities of a volume; opacities hold for `unitDistance` metres of a scene that is five times as
/// tall as the world, and stay as they are when the scene is stretched further.
void vtk_volume_functions_update(vtkVolumeProperty* property, const TORVLayerParameters3d& params,
                                 const TORVDataType& type, vtkScalarsToColors* colours, double unitDistance);
