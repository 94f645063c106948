#include "visualization/TORVVolumePath.h"

#include "support/LogFile.h"
#include "support/OffscreenScene.h"

#include <gtest/gtest.h>

#include <vtkRenderWindow.h>
#include <vtkRenderer.h>

TEST(TORVVolumePathTest, KnowsTheProcessorsRenderers)
{
    EXPECT_TRUE(TORVVolumePath::isSoftwareRenderer("llvmpipe (LLVM 15.0.6, 256 bits)"));
    EXPECT_TRUE(TORVVolumePath::isSoftwareRenderer("softpipe"));
    EXPECT_TRUE(TORVVolumePath::isSoftwareRenderer("SWR (LLVM 12.0.0, 256 bits)"));
    EXPECT_FALSE(TORVVolumePath::isSoftwareRenderer("NVIDIA GeForce GTX 1080/PCIe/SSE2"));
    EXPECT_FALSE(TORVVolumePath::isSoftwareRenderer("Mesa Intel(R) UHD Graphics 620 (KBL GT2)"));
}

TEST(TORVVolumePathTest, AsksTheContextWhatItIs)
{
    OffscreenScene scene;
    vtkNew<vtkRenderer> renderer;
    scene.window()->AddRenderer(renderer);
    scene.picture();
    TORVVolumePath::setSoftware(false);
    const LogFile log(TORVLog::LEVEL_NOTICE);
    TORVVolumePath::detect(scene.window());
    ASSERT_EQ(log.lines().size(), 1);
    const QString line = log.lines().first();
    ASSERT_TRUE(line.startsWith(QStringLiteral("N: OpenGL renderer: "))) << qUtf8Printable(line);
    const bool isMesaOnProcessor = line.contains(QStringLiteral("llvmpipe"));
    EXPECT_EQ(TORVVolumePath::isSoftware(), isMesaOnProcessor);
    EXPECT_EQ(line.endsWith(QStringLiteral("by the processor")), isMesaOnProcessor);
    TORVVolumePath::setSoftware(true);
}
