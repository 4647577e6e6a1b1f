# Installs the shared library with its public headers, the package configuration for find_package(ParavueSetup), the
# programs and the documents; `cpack` packs them into an archive.

include(CMakePackageConfigHelpers)

# What hosts may include, in src.
set(PARAVUE_PUBLIC_HEADERS
    store/LinkStatus.h store/OrbSetup.h store/StoreObserver.h
    device/Credentials.h device/login/Credentials.h device/OrbNetSetup.h
    device/RememberedWindows.h device/TimeZoneTable.h
    entry/DoParavueSetup.h entry/FinishParavueSetup.h entry/RunParavueSetup.h entry/SetupPage.h entry/cSetupWidget.h
    snapshots/SnapshotStore.h translations/InstallTranslations.h ui/WindowOptions.h
    check/DescriptionCheck.h check/DescriptionSchema.h)
# The plain C interface needs none of them, and is included without a folder.
set(PARAVUE_C_HEADER capi/paravue.h)

set(PARAVUE_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/ParavueSetup)

# paravue_install_program(TARGET [LINKS_LIBRARY]): installs a program. One that links the shared library finds that of
# its own installation, also after the installation was moved. Others get no path: the build tree would keep room for it,
# filled with colons, and an empty entry means that libraries are looked for in the folder that one happens to stand in.
function(paravue_install_program target)
    cmake_parse_arguments(arg "LINKS_LIBRARY" "" "" ${ARGN})
    if(NOT PARAVUE_INSTALL)
        return()
    endif()
    if(arg_LINKS_LIBRARY AND UNIX AND NOT APPLE)
        file(RELATIVE_PATH to_libraries
            ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
        set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${to_libraries}")
    endif()
    install(TARGETS ${target} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT programs)
endfunction()

# paravue_install_library(): installs the library and its public headers. The headers keep their folders, so that hosts
# include them under the same names as the library itself does.
function(paravue_install_library)
    install(TARGETS ParavueSetup EXPORT ParavueSetupTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)

    # The default settings, which an administrator may change. Without this file the library uses a built-in copy.
    if(WIN32)
        install(FILES ${PARAVUE_SOURCE_DIR}/device/resources/settings.ini
            DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library)
    endif()

    set(include_dir ${CMAKE_INSTALL_INCLUDEDIR}/ParavueSetup)
    install(FILES ${PARAVUE_GENERATED_DIR}/ParavueSetupExport.h
        DESTINATION ${include_dir} COMPONENT development)
    install(FILES ${PARAVUE_SOURCE_DIR}/${PARAVUE_C_HEADER}
        DESTINATION ${include_dir} COMPONENT development)
    foreach(header IN LISTS PARAVUE_PUBLIC_HEADERS)
        cmake_path(GET header PARENT_PATH folder)
        install(FILES ${PARAVUE_SOURCE_DIR}/${header}
            DESTINATION ${include_dir}/${folder} COMPONENT development)
    endforeach()
endfunction()

function(paravue_install_package)
    install(EXPORT ParavueSetupTargets
        NAMESPACE ParavueSetup::
        DESTINATION ${PARAVUE_PACKAGE_DIR} COMPONENT development)
    # What a program in C links: the library itself, or its import library on Windows.
    set(PARAVUE_C_INCLUDE_DIR ${CMAKE_INSTALL_INCLUDEDIR}/ParavueSetup)
    if(WIN32)
        set(PARAVUE_C_KIND IMPLIB)
        set(PARAVUE_C_FILE
            ${CMAKE_INSTALL_LIBDIR}/${CMAKE_IMPORT_LIBRARY_PREFIX}ParavueSetup${CMAKE_IMPORT_LIBRARY_SUFFIX})
    else()
        set(PARAVUE_C_KIND LOCATION)
        set(PARAVUE_C_FILE
            ${CMAKE_INSTALL_LIBDIR}/${CMAKE_SHARED_LIBRARY_PREFIX}ParavueSetup${CMAKE_SHARED_LIBRARY_SUFFIX})
    endif()
    configure_package_config_file(cmake/ParavueSetupConfig.cmake.in
        ${PARAVUE_GENERATED_DIR}/ParavueSetupConfig.cmake
        INSTALL_DESTINATION ${PARAVUE_PACKAGE_DIR}
        PATH_VARS PARAVUE_C_FILE PARAVUE_C_INCLUDE_DIR)
    # For programs in C that are built without CMake.
    if(UNIX)
        # Found from the file's own place, so that an installation can be moved.
        file(RELATIVE_PATH PARAVUE_C_PREFIX
            ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
        configure_file(cmake/paravue.pc.in ${PARAVUE_GENERATED_DIR}/paravue.pc @ONLY)
        install(FILES ${PARAVUE_GENERATED_DIR}/paravue.pc
            DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
    endif()
    # Before 1.0 every minor version may change the interface.
    write_basic_package_version_file(${PARAVUE_GENERATED_DIR}/ParavueSetupConfigVersion.cmake
        COMPATIBILITY SameMinorVersion)
    install(FILES
        ${PARAVUE_GENERATED_DIR}/ParavueSetupConfig.cmake
        ${PARAVUE_GENERATED_DIR}/ParavueSetupConfigVersion.cmake
        DESTINATION ${PARAVUE_PACKAGE_DIR} COMPONENT development)
    install(FILES README.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT library)
    install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/docs COMPONENT library)
endfunction()

# Only as the top-level project: as a part of another project this would configure that project's archives.
if(PROJECT_IS_TOP_LEVEL)
    set(CPACK_PACKAGE_VENDOR "Paravue Setup")
    set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
    set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_CURRENT_SOURCE_DIR}/LICENSE)
    if(WIN32)
        set(CPACK_GENERATOR ZIP)
    else()
        set(CPACK_GENERATOR TGZ)
    endif()
    set(CPACK_STRIP_FILES ON)
    set(CPACK_VERBATIM_VARIABLES ON)
    include(CPack)
endif()
