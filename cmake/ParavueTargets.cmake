# Helpers that give every target of the project the same language level, warnings and meta-object steps.

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
    target_compile_options(${target} PRIVATE -Wall -Wextra
        $<$<BOOL:${PARAVUE_WARNINGS_AS_ERRORS}>:-Werror>)
endfunction()

# paravue_add_library(NAME SOURCES ... LINK ...): the static library of one source folder. Its objects also
# become part of the shared library, so they are compiled with that library's export macro.
function(paravue_add_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    paravue_target_defaults(${name})
    target_include_directories(${name} PUBLIC ${PARAVUE_SOURCE_DIR} ${PARAVUE_GENERATED_DIR})
    target_compile_definitions(${name} PUBLIC ParavueSetup_EXPORTS)
    target_link_libraries(${name} PUBLIC ${arg_LINK})
endfunction()
