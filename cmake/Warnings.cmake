# The one place where warning flags live; every target of ours links it.
add_library(torv_warnings INTERFACE)
target_compile_options(torv_warnings INTERFACE
    -Werror
    -Wall
    -Wextra
    -Wpedantic
    -Wshadow                 # a hidden member or parameter is a bug in waiting
    -Wconversion             # header values are hostile: every narrowing is written down
    -Wno-sign-conversion     # Qt counts with int, VTK with vtkIdType, the standard library with size_t
    -Wdouble-promotion       # a float that slipped into double arithmetic
    -Wnon-virtual-dtor
    -Woverloaded-virtual
    -Wcast-align
    -Wformat=2
    -Wduplicated-cond
    -Wlogical-op
    -Wextra-semi
)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    # Names of GCC alone, kept in the list above; clang is used for fuzzing and clang-tidy only.
    target_compile_options(torv_warnings INTERFACE -Wno-unknown-warning-option)
endif()
# Assertions are part of the behaviour: no build type may switch them off.
target_compile_options(torv_warnings INTERFACE -UNDEBUG)
# VTK's headers bring in TBB, whose emit() collides with Qt's macro.
target_compile_definitions(torv_warnings INTERFACE QT_NO_KEYWORDS QT_DEPRECATED_WARNINGS)
if(TORV_PCH AND TORV_CCACHE AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(torv_warnings INTERFACE -fpch-preprocess)
endif()
