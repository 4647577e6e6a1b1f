# Finds FFmpeg's libraries by name in CMake's search paths and not through pkg-config: a cross build must not find the
# libraries of the computer that it runs on, and unpacked archives of FFmpeg have no pkg-config files with the right
# paths. Each component, such as avcodec, becomes the imported target FFmpeg::avcodec.
include(FindPackageHandleStandardArgs)

foreach(component IN LISTS FFmpeg_FIND_COMPONENTS)
    find_path(FFmpeg_${component}_INCLUDE_DIR lib${component}/${component}.h)
    find_library(FFmpeg_${component}_LIBRARY ${component})
    mark_as_advanced(FFmpeg_${component}_INCLUDE_DIR FFmpeg_${component}_LIBRARY)
    list(APPEND FFmpeg_required_variables FFmpeg_${component}_LIBRARY FFmpeg_${component}_INCLUDE_DIR)
    if(FFmpeg_${component}_INCLUDE_DIR AND FFmpeg_${component}_LIBRARY)
        set(FFmpeg_${component}_FOUND TRUE)
        if(NOT TARGET FFmpeg::${component})
            add_library(FFmpeg::${component} UNKNOWN IMPORTED)
            set_target_properties(FFmpeg::${component} PROPERTIES
                IMPORTED_LOCATION ${FFmpeg_${component}_LIBRARY}
                INTERFACE_INCLUDE_DIRECTORIES ${FFmpeg_${component}_INCLUDE_DIR})
        endif()
    endif()
endforeach()

find_package_handle_standard_args(FFmpeg REQUIRED_VARS ${FFmpeg_required_variables} HANDLE_COMPONENTS)
unset(FFmpeg_required_variables)
