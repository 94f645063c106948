# What every target of ours has in common.
function(torv_defaults target)
    target_link_libraries(${target} PRIVATE torv_warnings)
    set_target_properties(${target} PROPERTIES AUTOMOC ON AUTOUIC ON AUTORCC ON)
endfunction()

# Precompiled headers: GROUP is "qt" for code without VTK, "vtk" for code that draws.
function(torv_precompile target group)
    if(TORV_PCH)
        target_precompile_headers(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/pch_${group}.h)
    endif()
endfunction()
