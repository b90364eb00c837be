# The skin library for programs: `pelkgui`, what a program links that is built in one tree with it, and
# `pelkgui_shared`, libpelkgui.so, the same rooms for everybody else. Both bring the program's entry (`main`), so that a
# program needs no more than its application object.
add_library(pelkgui INTERFACE)
target_link_libraries(pelkgui INTERFACE skinwnd mfc_main)
add_library(pelkgui::pelkgui ALIAS pelkgui)

# The very objects that programs link, so that nothing is compiled twice. Built only when asked for.
get_property(floor GLOBAL PROPERTY VARNHAL_FLOOR)
string(REPLACE ";" "," floor "${floor}")
add_library(pelkgui_shared SHARED EXCLUDE_FROM_ALL ${PROJECT_SOURCE_DIR}/platform/mfc/main/main.cpp)
target_link_libraries(pelkgui_shared PRIVATE skinwnd varnhal_language)
target_link_options(pelkgui_shared PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/pelkgui.map
    -Wl,--no-undefined)
set_target_properties(pelkgui_shared PROPERTIES OUTPUT_NAME pelkgui CXX_VISIBILITY_PRESET default
    LINK_LIBRARY_OVERRIDE "WHOLE_ARCHIVE,skinwnd,skin,xml,look,${floor}"
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/pelkgui.map)
