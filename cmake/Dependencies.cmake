find_package(Qt5 5.15 REQUIRED COMPONENTS Core Gui Svg Widgets LinguistTools)
find_package(Boost 1.74 REQUIRED)
find_package(PROJ 9.1 REQUIRED CONFIG)
find_package(VTK 9.1 REQUIRED COMPONENTS
    CommonCore
    CommonDataModel
    CommonSystem
    FiltersCore
    FiltersGeometry
    FiltersSources
    GUISupportQt
    GeovisCore
    IOImage
    IOLegacy
    IOXML
    ImagingCore
    ImagingGeneral
    InteractionStyle
    InteractionWidgets
    RenderingAnnotation
    RenderingCore
    RenderingFreeType
    RenderingOpenGL2
    RenderingUI
    RenderingVolume
    RenderingVolumeOpenGL2
)
if(TORV_TESTS)
    find_package(Qt5 5.15 REQUIRED COMPONENTS Test)
    find_package(GTest REQUIRED)
    include(GoogleTest)
endif()
if(TORV_BENCH)
    find_package(benchmark REQUIRED)
endif()
