option(TORV_TESTS "Build the tests" ON)
option(TORV_BENCH "Build the benchmarks" ON)
option(TORV_FUZZ "Build the fuzz harnesses with a replay main" ON)
option(TORV_PCH "Use precompiled headers; OFF shows whether each header stands alone" ON)
option(TORV_LIBFUZZER "Link the fuzz harnesses with libFuzzer (needs clang)" OFF)
set(TORV_SANITIZER "" CACHE STRING "Sanitizer of this build: empty, address (with undefined) or thread")
set_property(CACHE TORV_SANITIZER PROPERTY STRINGS "" address thread)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

find_program(TORV_CCACHE ccache)
if(TORV_CCACHE)
    # ccache sees through precompiled headers only when told that their time macros don't matter.
    set(CMAKE_CXX_COMPILER_LAUNCHER
        ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${TORV_CCACHE})
endif()
