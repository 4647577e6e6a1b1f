# The target abi_surface: debug information about what the public headers declare, and nothing else, for
# scripts/check-abi. Built on demand; debug information of the whole library would take minutes.

if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU" OR WIN32)
    return()
endif()

set(surface "// The public headers, with variables of what is to be described.\n")
foreach(header IN LISTS PARAVUE_PUBLIC_HEADERS PARAVUE_C_HEADER)
    string(APPEND surface "#include \"${header}\"\n")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PARAVUE_SOURCE_DIR}/${header})
    file(STRINGS ${PARAVUE_SOURCE_DIR}/${header} definitions REGEX "^(class|struct) [^;]*$")
    list(APPEND classes ${definitions})
endforeach()
string(APPEND surface "using namespace paravue;\n")
list(TRANSFORM classes REPLACE "^(class|struct) (PARAVUE_EXPORT )?([A-Za-z]+).*" "\\3")
foreach(class IN LISTS classes)
    string(APPEND surface "extern ${class} *abi_${class};\n${class} *abi_${class};\n")
endforeach()
# The types of functions in C, which the names of their symbols do not tell.
file(STRINGS ${PARAVUE_SOURCE_DIR}/${PARAVUE_C_HEADER} lines REGEX "paravue_[a-z_]+\\(")
string(REGEX MATCHALL "paravue_[a-z_]+\\(" functions "${lines}")
list(TRANSFORM functions REPLACE "\\(" "")
list(REMOVE_DUPLICATES functions)
foreach(function IN LISTS functions)
    set(type "decltype(&${function})")
    string(APPEND surface "extern ${type} abi_${function};\n${type} abi_${function} = &${function};\n")
endforeach()
file(CONFIGURE OUTPUT ${PARAVUE_GENERATED_DIR}/abi_surface.cpp CONTENT "${surface}" @ONLY)

add_library(abi_surface STATIC EXCLUDE_FROM_ALL ${PARAVUE_GENERATED_DIR}/abi_surface.cpp)
paravue_target_defaults(abi_surface)
set_target_properties(abi_surface PROPERTIES
    AUTOMOC OFF AUTORCC OFF CXX_VISIBILITY_PRESET default VISIBILITY_INLINES_HIDDEN OFF)
# Not the library itself, which would have to be built before.
target_include_directories(abi_surface PRIVATE ${PARAVUE_SOURCE_DIR} ${PARAVUE_GENERATED_DIR})
target_link_libraries(abi_surface PRIVATE Qt6::Widgets Qt6::Network)
# By default a class is described beside its virtual functions only, and a type where it is used only.
target_compile_options(abi_surface PRIVATE -g -gdwarf-4 -femit-class-debug-always -fno-eliminate-unused-debug-types)
