# Helpers that give every target of the project the same language standard, warnings and meta-object steps.

set(PARAVUE_GENERATED_DIR ${CMAKE_CURRENT_BINARY_DIR}/generated)
set(PARAVUE_SOURCE_DIR ${CMAKE_CURRENT_SOURCE_DIR}/src)

# paravue_target_defaults(TARGET): compiler settings for our own code.
function(paravue_target_defaults target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON
        AUTOMOC ON
        AUTORCC ON
        # A Qt without zstd, such as one cross-built for Windows, cannot read resources packed with it.
        AUTORCC_OPTIONS --no-zstd)
    # These options are private: projects and tests that use the library may use Qt's keywords such as "slots".
    target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS)
    target_compile_options(${target} PRIVATE -Wall -Wextra
        $<$<BOOL:${PARAVUE_WARNINGS_AS_ERRORS}>:-Werror>)
    # Let ccache see which headers a precompiled header consists of, and make precompiled headers reproducible.
    target_compile_options(${target} PRIVATE
        $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>
        "SHELL:$<$<CXX_COMPILER_ID:Clang>:-Xclang -fno-pch-timestamp>")
endfunction()

# Parsing the same headers again is nearly all of the time that a small source takes to compile. Only the headers that
# nearly every source includes are precompiled: a larger set takes as long to load as it saves. Sources still include
# every header that they need; a build with -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON fails if one does not.
set(PARAVUE_CORE_HEADERS
    <QHash> <QList> <QObject> <QString> <QStringList> <algorithm> <functional> <memory>)
set(PARAVUE_WINDOW_HEADERS ${PARAVUE_CORE_HEADERS} <QPainter> <QWidget>)

# paravue_add_headers(NAME LINK ... HEADERS ...): a set of headers, precompiled once for several targets, since
# precompiling takes as long as compiling several sources.
function(paravue_add_headers name)
    cmake_parse_arguments(arg "" "" "LINK;HEADERS" ${ARGN})
    file(CONFIGURE OUTPUT ${PARAVUE_GENERATED_DIR}/${name}.cpp CONTENT "// Only the headers matter.\n")
    add_library(${name} OBJECT ${PARAVUE_GENERATED_DIR}/${name}.cpp)
    paravue_target_defaults(${name})
    set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTORCC OFF)
    target_link_libraries(${name} PRIVATE ${arg_LINK})
    target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
endfunction()

paravue_add_headers(paravue_core_headers LINK Qt6::Core HEADERS ${PARAVUE_CORE_HEADERS})
paravue_add_headers(paravue_window_headers LINK Qt6::Widgets HEADERS ${PARAVUE_WINDOW_HEADERS})

# paravue_add_library(NAME SOURCES ... LINK ... HEADERS SET): the static library of one source folder, compiled with a
# set of precompiled headers. Its objects also become part of the shared library, so they are compiled with that
# library's export macro.
function(paravue_add_library name)
    cmake_parse_arguments(arg "" "HEADERS" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    paravue_target_defaults(${name})
    target_precompile_headers(${name} REUSE_FROM ${arg_HEADERS})
    target_include_directories(${name} PUBLIC ${PARAVUE_SOURCE_DIR} ${PARAVUE_GENERATED_DIR})
    target_compile_definitions(${name} PUBLIC ParavueSetup_EXPORTS)
    target_link_libraries(${name} PUBLIC ${arg_LINK})
endfunction()
