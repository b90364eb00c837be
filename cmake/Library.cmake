# The skin library for programs: `pelkgui`, what a program links that is built in one tree with it, and
# `pelkgui_shared`, libpelkgui.so, the same rooms for everybody else. Both bring the program's entry (`main`), so that a
# program needs no more than its application object.
add_library(pelkgui INTERFACE)
target_link_libraries(pelkgui INTERFACE skinwnd mfc_main)
add_library(pelkgui::pelkgui ALIAS pelkgui)

# The rooms of the library mark what they export. The floor marks nothing: its headers are those of another system, and
# what they declare stands outside of all namespaces, its own parts in namespace win32. So it is compiled once more with
# everything visible, and the linker hides the namespace. Built only when asked for.
get_property(exported_rooms GLOBAL PROPERTY VARNHAL_EXPORTED_ROOMS)
add_library(pelkgui_shared SHARED EXCLUDE_FROM_ALL ${PROJECT_SOURCE_DIR}/platform/mfc/main/main.cpp
    $<TARGET_OBJECTS:look> $<TARGET_OBJECTS:xml> $<TARGET_OBJECTS:skin> $<TARGET_OBJECTS:skinwnd>)
target_link_libraries(pelkgui_shared PRIVATE ${exported_rooms} varnhal_language)
target_link_options(pelkgui_shared PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/pelkgui.map
    -Wl,--no-undefined)
set_target_properties(pelkgui_shared PROPERTIES OUTPUT_NAME pelkgui CXX_VISIBILITY_PRESET default
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
    LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/pelkgui.map)
