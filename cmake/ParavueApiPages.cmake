# The target api-pages: pages about the public headers, in api/html of the build folder. A warning of doxygen, such as
# one about a name that does not exist, fails it. Without doxygen there is no such target.

find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
    return()
endif()

set(DOXYGEN_PROJECT_NAME "Paravue Setup")
set(DOXYGEN_PROJECT_NUMBER ${PROJECT_VERSION})
set(DOXYGEN_PROJECT_BRIEF "Setup window for networked video recorders")
set(DOXYGEN_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/api)
set(DOXYGEN_USE_MDFILE_AS_MAINPAGE ${CMAKE_CURRENT_SOURCE_DIR}/docs/hosts.md)
set(DOXYGEN_STRIP_FROM_PATH ${PARAVUE_SOURCE_DIR})
set(DOXYGEN_STRIP_FROM_INC_PATH ${PARAVUE_SOURCE_DIR})
# The first sentence of a comment is the brief description.
set(DOXYGEN_JAVADOC_AUTOBRIEF YES)
set(DOXYGEN_GENERATE_LATEX NO)
set(DOXYGEN_GENERATE_TREEVIEW YES)
set(DOXYGEN_SHOW_FILES YES)
set(DOXYGEN_QUIET YES)
# Members whose names say everything have no comment.
set(DOXYGEN_EXTRACT_ALL YES)
set(DOXYGEN_WARN_AS_ERROR FAIL_ON_WARNINGS)
set(DOXYGEN_MACRO_EXPANSION YES)
set(DOXYGEN_EXPAND_ONLY_PREDEF YES)
set(DOXYGEN_PREDEFINED PARAVUE_EXPORT= PARAVUE_CALL= PARAVUE_C_EXPORT= PARAVUE_C_CALL= "Q_OBJECT=" "Q_DISABLE_COPY_MOVE(x)=")

set(pages docs/hosts.md docs/c-interface.md docs/changes.md docs/snapshots.md)
foreach(header IN LISTS PARAVUE_PUBLIC_HEADERS PARAVUE_C_HEADER)
    list(APPEND pages src/${header})
endforeach()
doxygen_add_docs(api-pages ${pages} WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR} COMMENT "Writing the API pages")
