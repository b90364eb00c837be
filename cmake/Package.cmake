# What `cmake --install --component pelkgui` and the .deb hold: the shared library, the headers that programs include,
# the CMake package (find_package(pelkgui)) with add_resources, and skinview.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(headers ${CMAKE_INSTALL_INCLUDEDIR}/pelkgui)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/pelkgui)
set(public_headers
    look/GuiInterface.h look/GuiManager.h look/PelkGuiApi.h
    xml/OvXML.h xml/TextUtil.h
    skin/GuiSkin.h skin/GuiSkinWindow.h skin/WindowSkinPtr.h
    skinwnd/GuiCmdButton.h skinwnd/GuiMiniFrameWnd.h skinwnd/GuiSkinCmdInterface.h skinwnd/GuiSkinInterface.h)
foreach(header ${public_headers})
    get_filename_component(room ${header} DIRECTORY)
    install(FILES ${header} DESTINATION ${headers}/${room} COMPONENT pelkgui)
endforeach()
install(DIRECTORY platform/win32/include/ platform/mfc/include/ DESTINATION ${headers} COMPONENT pelkgui)

set_target_properties(pelkgui_shared PROPERTIES EXPORT_NAME pelkgui)
target_compile_features(pelkgui_shared INTERFACE cxx_std_20)
install(TARGETS pelkgui_shared EXPORT pelkguiTargets LIBRARY COMPONENT pelkgui
    INCLUDES DESTINATION ${headers})
install(TARGETS skinview COMPONENT pelkgui)
install(EXPORT pelkguiTargets NAMESPACE pelkgui:: DESTINATION ${package} COMPONENT pelkgui)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/pelkguiConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES cmake/pelkguiConfig.cmake cmake/Resources.cmake cmake/resources.cpp.in
    ${PROJECT_BINARY_DIR}/pelkguiConfigVersion.cmake DESTINATION ${package} COMPONENT pelkgui)

set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL pelkgui)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/package)
set(CPACK_PACKAGE_CONTACT "Varnhal maintainers <maintainers@varnhal.invalid>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PELKGUI_PACKAGE_NAME pelkgui)
set(CPACK_DEBIAN_PELKGUI_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PELKGUI_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PELKGUI_DESCRIPTION "Windows drawn from skins: library, headers and skinview
The shared library libpelkgui, the headers and the CMake package that programs are built with, and skinview, which
shows a skin to its author.")
set(CPACK_DEBIAN_PELKGUI_PACKAGE_SHLIBDEPS ON)
# Loaded when the first text is drawn and the first cursor is shown, which no tool can see.
set(CPACK_DEBIAN_PELKGUI_PACKAGE_DEPENDS "libpangoft2-1.0-0, libxcb-cursor0")
set(CPACK_DEBIAN_PELKGUI_PACKAGE_RECOMMENDS "llvm-14, cmake (>= 3.25)") # what add_resources needs
include(CPack)
