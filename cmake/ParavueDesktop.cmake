# What desktops and shells of Unix systems know of the programs: icons, menu entries, types of files, man pages and
# completions. The last two are made from the --help of the programs, with Python; without it they are left out.

if(NOT UNIX OR NOT PARAVUE_BUILD_APPS)
    return()
endif()

set(desktop ${CMAKE_CURRENT_SOURCE_DIR}/packaging/desktop)
install(FILES ${desktop}/paravue-setup.desktop ${desktop}/paravue-snapshot.desktop ${desktop}/hvx3-info.desktop
    DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT programs)
install(FILES ${desktop}/paravue.xml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages COMPONENT programs)
set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
install(FILES apps/program/windows/paravue.svg
    DESTINATION ${icons}/scalable/apps RENAME paravue-setup.svg COMPONENT programs)
foreach(size IN ITEMS 16 22 24 32 48 64 128 256)
    install(FILES ${desktop}/icons/${size}.png
        DESTINATION ${icons}/${size}x${size}/apps RENAME paravue-setup.png COMPONENT programs)
endforeach()
configure_file(${desktop}/org.paravue.setup.metainfo.xml.in
    ${PARAVUE_GENERATED_DIR}/org.paravue.setup.metainfo.xml @ONLY)
install(FILES ${PARAVUE_GENERATED_DIR}/org.paravue.setup.metainfo.xml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT programs)

find_package(Python3 QUIET COMPONENTS Interpreter)
if(NOT Python3_FOUND OR CMAKE_CROSSCOMPILING)
    return()
endif()

set(PARAVUE_ZSH_COMPLETIONS_DIR ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING
    "Where the completions for zsh are installed")
set(manuals ${PARAVUE_GENERATED_DIR}/manuals)
foreach(program IN ITEMS paravue-setup paravue-recorder hvx3-info paravue-ctl)
    set(files ${manuals}/${program}.1 ${manuals}/${program}.bash ${manuals}/_${program} ${manuals}/${program}.fish)
    add_custom_command(OUTPUT ${files}
        COMMAND ${Python3_EXECUTABLE} ${desktop}/make-manual
            $<TARGET_FILE:${program}> ${PROJECT_VERSION} ${manuals}
        DEPENDS ${program} ${desktop}/make-manual ${desktop}/values ${desktop}/man/${program}
        COMMENT "Writing the man page and the completions of ${program}"
        VERBATIM)
    list(APPEND all_files ${files})
    install(FILES ${manuals}/${program}.1
        DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT programs)
    install(FILES ${manuals}/${program}.bash
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME ${program} COMPONENT programs)
    install(FILES ${manuals}/_${program} DESTINATION ${PARAVUE_ZSH_COMPLETIONS_DIR} COMPONENT programs)
    install(FILES ${manuals}/${program}.fish
        DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT programs)
endforeach()
add_custom_target(paravue_manuals ALL DEPENDS ${all_files})

if(PARAVUE_BUILD_TESTS)
    add_test(NAME manuals
        COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/tests/desktop/check-manuals ${manuals}
            $<TARGET_FILE:paravue-setup> $<TARGET_FILE:paravue-recorder> $<TARGET_FILE:hvx3-info>
            $<TARGET_FILE:paravue-ctl>)
    set_tests_properties(manuals PROPERTIES ENVIRONMENT "LC_ALL=C.UTF-8" TIMEOUT 120)
endif()
