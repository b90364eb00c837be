# find_package(pelkgui): the target pelkgui::pelkgui, and add_resources(target file.rc) for the program's resources.
include(${CMAKE_CURRENT_LIST_DIR}/pelkguiTargets.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/Resources.cmake)
