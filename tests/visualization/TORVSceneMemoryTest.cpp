#include "visualization/TORVSceneMemory.h"

#include "visualization/TORV2DLayerActor.h"

#include <vtkActor.h>
#include <vtkActor2D.h>
#include <vtkAssembly.h>
#include <vtkCellArray.h>
#include <vtkDataArray.h>
#include <vtkFloatArray.h>
#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkPropAssembly.h>
#include <vtkSmartVolumeMapper.h>
#include <vtkTexture.h>
#include <vtkVolume.h>

#include <gtest/gtest.h>

namespace
{

constexpr qint64 Kibibyte = 1024;

// A byte a point.
vtkSmartPointer<vtkImageData> image(int kibibytes)
{
    auto result = vtkSmartPointer<vtkImageData>::New();
    result->SetDimensions(32, 32, kibibytes);
    result->AllocateScalars(VTK_UNSIGNED_CHAR, 1);
    return result;
}

// 1024 points of three floats: 12 KiB.
vtkSmartPointer<vtkPolyData> mesh()
{
    vtkNew<vtkPoints> points;
    points->SetNumberOfPoints(1024);
    points->GetData()->Fill(0.0);
    auto result = vtkSmartPointer<vtkPolyData>::New();
    result->SetPoints(points);
    return result;
}

vtkSmartPointer<vtkActor> actorOf(vtkPolyData* data)
{
    vtkNew<vtkPolyDataMapper> mapper;
    mapper->SetInputData(data);
    auto actor = vtkSmartPointer<vtkActor>::New();
    actor->SetMapper(mapper);
    return actor;
}

} // namespace

TEST(TORVSceneMemoryTest, NothingTakesNothing)
{
    TORVSceneMemory memory;
    memory.add(static_cast<vtkProp*>(nullptr));
    memory.add(static_cast<vtkDataObject*>(nullptr));
    vtkNew<vtkActor> actor;
    vtkNew<vtkVolume> volume;
    vtkNew<vtkActor2D> caption;
    vtkNew<vtkPolyData> empty;
    memory.add(actor);
    memory.add(volume);
    memory.add(caption);
    memory.add(empty);
    EXPECT_EQ(memory.getBytes(), 0);
}

TEST(TORVSceneMemoryTest, CountsPointsAndWhatTheyCarry)
{
    const vtkSmartPointer<vtkPolyData> data = mesh();
    vtkNew<vtkFloatArray> heights;
    heights->SetNumberOfTuples(1024);
    data->GetPointData()->AddArray(heights);
    TORVSceneMemory memory;
    memory.add(data);
    EXPECT_EQ(memory.getBytes(), (12 + 4) * Kibibyte);
}

// 341 triangles: 342 offsets and 1023 corners of eight bytes, each of the two rounded up to a kibibyte.
TEST(TORVSceneMemoryTest, CountsCells)
{
    vtkNew<vtkCellArray> triangles;
    triangles->Use64BitStorage();
    triangles->AllocateExact(341, 1023);
    for (vtkIdType triangle = 0; triangle < 341; ++triangle) {
        triangles->InsertNextCell({triangle, triangle + 1, triangle + 2});
    }
    const vtkSmartPointer<vtkPolyData> data = mesh();
    data->SetPolys(triangles);
    TORVSceneMemory memory;
    memory.add(data);
    EXPECT_EQ(memory.getBytes(), (12 + 3 + 8) * Kibibyte);
}

TEST(TORVSceneMemoryTest, CountsTheImageOfAVolume)
{
    vtkNew<vtkSmartVolumeMapper> mapper;
    mapper->SetInputData(image(100));
    vtkNew<vtkVolume> volume;
    volume->SetMapper(mapper);
    TORVSceneMemory memory;
    memory.add(volume);
    EXPECT_EQ(memory.getBytes(), 100 * Kibibyte);
}

TEST(TORVSceneMemoryTest, CountsThePictureOfATexture)
{
    vtkNew<vtkTexture> texture;
    texture->SetInputData(image(7));
    const vtkSmartPointer<vtkActor> actor = actorOf(mesh());
    actor->SetTexture(texture);
    TORVSceneMemory memory;
    memory.add(actor);
    EXPECT_EQ(memory.getBytes(), (12 + 7) * Kibibyte);
}

TEST(TORVSceneMemoryTest, CountsWhatIsSharedOnce)
{
    const vtkSmartPointer<vtkImageData> original = image(50);
    vtkNew<vtkImageData> copy;
    copy->ShallowCopy(original);
    const vtkSmartPointer<vtkPolyData> ground = mesh();
    vtkNew<vtkPolyData> own;
    own->ShallowCopy(ground);
    TORVSceneMemory memory;
    memory.add(original);
    memory.add(copy);
    memory.add(actorOf(ground));
    memory.add(actorOf(own));
    EXPECT_EQ(memory.getBytes(), (50 + 12) * Kibibyte);
}

TEST(TORVSceneMemoryTest, LooksIntoEveryKindOfAssembly)
{
    vtkNew<vtkAssembly> inner;
    inner->AddPart(actorOf(mesh()));
    vtkNew<TORV2DLayerActor> layer;
    layer->AddPart(actorOf(mesh()));
    vtkNew<vtkAssembly> outer;
    outer->AddPart(inner);
    outer->AddPart(actorOf(mesh()));
    vtkNew<vtkPropAssembly> all;
    all->AddPart(outer);
    all->AddPart(layer);
    TORVSceneMemory memory;
    memory.add(all);
    EXPECT_EQ(memory.getBytes(), 3 * 12 * Kibibyte);
}
