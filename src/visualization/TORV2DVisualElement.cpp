#include "visualization/TORV2DVisualElement.h"

#include "datalib/TORVProductData.h"
#include "visualization/TORV2DLayerActor.h"
#include "visualization/TORVColormap.h"

#include <QCoreApplication>

#include <vtkActor.h>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkColorTransferFunction.h>
#include <vtkDataSetMapper.h>
#include <vtkImageData.h>
#include <vtkImageImport.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPolyData.h>
#include <vtkProperty.h>
#include <vtkThreshold.h>
#include <vtkTimerLog.h>
#include <vtkTrivialProducer.h>
#include <vtkUnstructuredGrid.h>

#include <boost/make_shared.hpp>

#include <cassert>
#include <new>

namespace
{

void logDebug(const QString& text)
{
    TORVLog::Instance()->logDebug(text);
}

QString seconds(double value)
{
    return QString::number(value, 'f', 3) + QLatin1String(" seconds.");
}

void reportFailure(const TORVFile& file)
{
    TORVLog* const log = TORVLog::Instance();
    log->logError(QLatin1String("Tried to load invalid 2D data file: ") + file.getPath());
    log->logError(QStringLiteral("Aborting 2D visualization."));
    log->logHistory(QCoreApplication::translate("App", "Visualizing 2D data failed:"));
    log->logHistory(QLatin1String(" -") + file.getName());
}

/*
 * Each value belongs to a cell and not to a corner: a value alone among no data is a square of its own. The items stay
 * with `data`. A file of more levels than one shows its lowest.
 */
vtkSmartPointer<vtkImageData> cellsOf(const TORVFile& file, const TORVProductData& data)
{
    const int columns = file.getXPoints();
    const int rows = file.getYPoints();
    vtkNew<vtkImageImport> import;
    import->SetImportVoidPointer(const_cast<void*>(data.items())); // it is only read from
    import->SetWholeExtent(0, columns - 1, 0, rows - 1, 0, 0);
    import->SetDataExtent(0, columns - 1, 0, rows - 1, 0, 0);
    import->SetDataSpacing(1.0, 1.0, 1.0);
    import->SetDataOrigin(0.0, 0.0, 0.0);
    if (data.itemSize() == 1) {
        logDebug(QStringLiteral("..one byte 2D data"));
        import->SetDataScalarTypeToUnsignedChar();
    } else {
        logDebug(QStringLiteral("..two byte 2D data"));
        import->SetDataScalarTypeToUnsignedShort();
    }
    import->Update();
    auto cells = vtkSmartPointer<vtkImageData>::New();
    cells->SetDimensions(columns + 1, rows + 1, 1);
    cells->GetCellData()->SetScalars(import->GetOutput()->GetPointData()->GetScalars());
    return cells;
}

// What is drawn of a grid is made here, since a mapper that is given a grid would do it while it draws.
vtkSmartPointer<vtkPolyData> sheetOf(vtkUnstructuredGrid* grid)
{
    vtkNew<vtkCellArray> squares;
    squares->AllocateExact(grid->GetNumberOfCells(), 4 * grid->GetNumberOfCells());
    vtkIdType size = 0;
    const vtkIdType* corners = nullptr; // row by row
    for (vtkIdType cell = 0; cell < grid->GetNumberOfCells(); ++cell) {
        grid->GetCells()->GetCellAtId(cell, size, corners);
        assert(size == 4);
        squares->InsertNextCell({corners[0], corners[1], corners[3], corners[2]});
    }
    auto sheet = vtkSmartPointer<vtkPolyData>::New();
    sheet->SetPoints(grid->GetPoints());
    sheet->SetPolys(squares);
    sheet->GetCellData()->SetScalars(grid->GetCellData()->GetScalars());
    return sheet;
}

vtkSmartPointer<vtkPolyData> validCells(vtkImageData* cells, const TORVDataType& type)
{
    vtkNew<vtkThreshold> threshold;
    threshold->SetInputDataObject(cells);
    threshold->SetInputArrayToProcess(0, 0, 0, vtkDataObject::FIELD_ASSOCIATION_CELLS, vtkDataSetAttributes::SCALARS);
    threshold->SetThresholdFunction(vtkThreshold::THRESHOLD_BETWEEN);
    threshold->SetLowerThreshold(type.getMinAbsValue());
    threshold->SetUpperThreshold(type.getMaxAbsValue());
    threshold->Update();
    return sheetOf(threshold->GetOutput());
}

vtkSmartPointer<vtkPolyData> vtk_2D_data_create(const TORVFile::CPtr& dataFile, const std::atomic<bool>& abort)
{
    logDebug(QLatin1String("Reading data: ") + dataFile->getName());
    vtkNew<vtkTimerLog> timer;
    timer->StartTimer();
    assert(dataFile->isValid());
    const TORVProductData::CPtr data = TORVProductData::read(*dataFile);
    if (!data) {
        reportFailure(*dataFile);
        return {};
    }
    timer->StopTimer();
    logDebug(QLatin1String("..data cached in ") + seconds(timer->GetElapsedTime()));
    if (abort) {
        return {};
    }
    timer->StartTimer();
    vtkSmartPointer<vtkPolyData> sheet;
    try {
        sheet = validCells(cellsOf(*dataFile, *data), dataFile->getDataType());
    } catch (const std::bad_alloc&) {
        reportFailure(*dataFile);
        return {};
    }
    timer->StopTimer();
    logDebug(QLatin1String("..2d data read in ") + seconds(timer->GetElapsedTime()));
    logDebug(QStringLiteral("vtk_2D_data_create() finished."));
    return sheet;
}

// Whole numbers are mapped through a table, in which VTK leaves black what meets the first node: the scale is made to
// begin between two of them, in the same colour.
void startBetweenValues(vtkColorTransferFunction* map)
{
    double node[6]; // value, red, green, blue, midpoint, sharpness
    if (map && map->GetNodeValue(0, node) > 0) {
        map->AddRGBPoint(node[0] - 0.5, node[1], node[2], node[3]);
    }
}

// The sheet shows the exact colours of the scale, whatever the light.
void setSheetLook(vtkProperty* property)
{
    property->SetInterpolation(VTK_GOURAUD);
    property->SetDiffuse(0.0);
    property->SetAmbient(1.0);
    property->SetSpecular(0.0);
    property->SetSpecularPower(4.0);
    property->SetColor(1.0, 1.0, 1.0);
    property->SetFrontfaceCulling(0);
    property->SetBackfaceCulling(0);
    property->LightingOff();
}

} // namespace

TORV2DVisualElement::TORV2DVisualElement(TORVVisualGroup* parent, int id)
    : TORVLayerElement(parent, id, "TORV2DVisualElement", "Creating new visualization.")
{
}

TORV2DVisualElement::~TORV2DVisualElement() = default;

void TORV2DVisualElement::rebuild(const std::atomic<bool>& abort)
{
    createVTKData(abort);
}

void TORV2DVisualElement::complete(bool visible, const std::atomic<bool>& abort)
{
    Q_UNUSED(abort)
    if (visible && !_prop && _data) {
        vtkNew<vtkTimerLog> timer;
        timer->StartTimer();
        createVTK();
        timer->StopTimer();
        _seconds += timer->GetElapsedTime();
    }
    if (_seconds > 0.0) {
        logDebug(QLatin1String("..updated in ") + seconds(_seconds));
        _seconds = 0.0;
    }
}

void TORV2DVisualElement::invalidate()
{
    if (_mapper) {
        logDebug(QStringLiteral("Removing old 2D layer objects.."));
    }
    TORVLayerElement::invalidate();
    dropProp();
    _data = nullptr;
}

void TORV2DVisualElement::createVTKData(const std::atomic<bool>& abort)
{
    vtkNew<vtkTimerLog> timer;
    timer->StartTimer();
    dropProp();
    _data = nullptr;
    const TORVFile::CPtr& file = _params->getDataFile();
    assert(file);
    if (const vtkSmartPointer<vtkPolyData> sheet = vtk_2D_data_create(file, abort)) {
        vtkNew<vtkTrivialProducer> producer;
        producer->SetOutput(sheet);
        _data = producer;
    }
    timer->StopTimer();
    _seconds = timer->GetElapsedTime();
}

void TORV2DVisualElement::createVTK()
{
    assert(_params);
    const TORVFile::CPtr& file = _params->getDataFile();
    assert(file);
    _colormap = boost::make_shared<TORVColormap>(QStringLiteral("Default"), file->getDataType(),
                                                 TORVColormap::ABSOLUTE_VALUES, file->getRawType());
    startBetweenValues(vtkColorTransferFunction::SafeDownCast(_colormap->getMap()));
    _mapper = vtkSmartPointer<vtkDataSetMapper>::New();
    _mapper->SetInputConnection(_data->GetOutputPort());
    _mapper->SetLookupTable(_colormap->getMap());
    _mapper->SetColorMode(VTK_COLOR_MODE_MAP_SCALARS);
    _mapper->SetScalarModeToUseCellData();
    _actor = vtkSmartPointer<vtkActor>::New();
    _actor->SetMapper(_mapper);
    setSheetLook(_actor->GetProperty());
    vtkNew<TORV2DLayerActor> layer;
    layer->AddPart(_actor);
    _prop = layer;
    _mapper->Update();
}

// The screen may still show the old ones: they are left as they are.
void TORV2DVisualElement::dropProp()
{
    _prop = nullptr;
    _mapper = nullptr;
    _actor = nullptr;
    _colormap.reset();
}
