# Compiles the catalogues of texts, translations/paravue_LANGUAGE.ts, and packs them as resources, each beside Qt's own
# texts (standard buttons, file dialogs) in that language where the Qt of this computer has them. Without lrelease
# everything is built, and in English only.

if(TARGET Qt6::qmake)
    get_target_property(qmake Qt6::qmake LOCATION) # of this computer, also when it builds for another one
    execute_process(COMMAND ${qmake} -query QT_HOST_BINS
        OUTPUT_VARIABLE PARAVUE_QT_BINARIES OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    execute_process(COMMAND ${qmake} -query QT_INSTALL_TRANSLATIONS
        OUTPUT_VARIABLE PARAVUE_QT_TRANSLATIONS OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
find_program(PARAVUE_LRELEASE NAMES lrelease lrelease-qt6 HINTS ${PARAVUE_QT_BINARIES})
if(NOT PARAVUE_LRELEASE)
    message(WARNING "Without lrelease (Debian: qt6-l10n-tools) all texts are English")
endif()

# paravue_pack_translations(RESOURCE SOURCE_VARIABLE): appends the source of a resource of this name with all
# catalogues, which are under :/paravue/translations.
function(paravue_pack_translations name_of_resource source_variable)
    file(GLOB catalogues CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/translations/paravue_*.ts)
    set(compiled)
    set(entries)
    if(NOT PARAVUE_LRELEASE)
        set(catalogues)
    endif()
    foreach(catalogue IN LISTS catalogues)
        cmake_path(GET catalogue STEM name)
        set(output ${CMAKE_CURRENT_BINARY_DIR}/${name}.qm)
        add_custom_command(OUTPUT ${output}
            COMMAND ${PARAVUE_LRELEASE} -silent ${catalogue} -qm ${output}
            DEPENDS ${catalogue} COMMENT "Compiling ${name}.ts" VERBATIM)
        list(APPEND compiled ${output})
        string(APPEND entries "    <file alias=\"${name}.qm\">${output}</file>\n")
        string(REPLACE paravue_ qtbase_ texts_of_qt ${PARAVUE_QT_TRANSLATIONS}/${name}.qm)
        if(EXISTS ${texts_of_qt})
            cmake_path(GET texts_of_qt FILENAME name)
            string(APPEND entries "    <file alias=\"${name}\">${texts_of_qt}</file>\n")
        else()
            message(STATUS "No ${texts_of_qt} (Debian: qt6-translations-l10n): "
                "Qt's own texts are in that language only where they are installed")
        endif()
    endforeach()
    set(resource ${CMAKE_CURRENT_BINARY_DIR}/translations.qrc)
    file(CONFIGURE OUTPUT ${resource}
        CONTENT "<RCC>\n<qresource prefix=\"/paravue/translations\">\n${entries}</qresource>\n</RCC>\n")
    set(source ${CMAKE_CURRENT_BINARY_DIR}/packed_translations.cpp)
    add_custom_command(OUTPUT ${source}
        COMMAND Qt6::rcc --no-zstd --name ${name_of_resource} -o ${source} ${resource}
        DEPENDS ${resource} ${compiled} VERBATIM)
    set_source_files_properties(${source} PROPERTIES SKIP_AUTOGEN ON SKIP_PRECOMPILE_HEADERS ON)
    set(${source_variable} ${${source_variable}} ${source} PARENT_SCOPE)
endfunction()
