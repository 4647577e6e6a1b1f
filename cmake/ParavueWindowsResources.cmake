# What Windows shows of a program or a library and how it treats it: icon, version and manifest.

if(WIN32)
    enable_language(RC)
endif()

set(PARAVUE_RESOURCE_TEMPLATES ${CMAKE_CURRENT_LIST_DIR})

# paravue_describe(TARGET DESCRIPTION): a program gets all three, a library only its version.
function(paravue_describe target description)
    if(NOT WIN32)
        return()
    endif()
    set(name ${target})
    get_target_property(type ${target} TYPE)
    set(folder ${PARAVUE_GENERATED_DIR}/${target})
    if(type STREQUAL EXECUTABLE)
        set(file_type VFT_APP)
        set(file_name ${target}.exe)
        configure_file(${PARAVUE_RESOURCE_TEMPLATES}/program.manifest.in ${folder}.manifest @ONLY)
        set(icon_line "1 ICON \"${CMAKE_CURRENT_FUNCTION_LIST_DIR}/../apps/program/windows/paravue.ico\"")
        set(manifest_line "CREATEPROCESS_MANIFEST_RESOURCE_ID RT_MANIFEST \"${folder}.manifest\"")
    else()
        set(file_type VFT_DLL)
        set(file_name ${target}.dll)
    endif()
    configure_file(${PARAVUE_RESOURCE_TEMPLATES}/program.rc.in ${folder}.rc @ONLY)
    target_sources(${target} PRIVATE ${folder}.rc)
endfunction()
