# A room is a folder, a target and the rooms beneath it. Each target sees the headers of its own room and of the rooms it
# links, and no others: every room's folder is linked into an include directory of its own, so that an include which
# reaches round the plan of the house does not build.

# Makes `directory` (relative to the project) includable as "directory/..." and gives that include path in `out`.
function(room_include_dir out directory)
    string(MAKE_C_IDENTIFIER ${directory} id)
    set(root ${PROJECT_BINARY_DIR}/rooms/${id})
    get_filename_component(parent ${root}/${directory} DIRECTORY)
    file(MAKE_DIRECTORY ${parent})
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${directory} ${root}/${directory} SYMBOLIC)
    set(${out} ${root} PARENT_SCOPE)
endfunction()

# add_room(target directory [LINKS rooms whose headers its users may see...] [PRIVATE libraries of its own...])
# Takes every .cpp directly in the directory.
function(add_room target directory)
    cmake_parse_arguments(ROOM "" "" "LINKS;PRIVATE" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${directory}/*.cpp)
    room_include_dir(include ${directory})
    if(NOT sources) # headers alone
        add_library(${target} INTERFACE)
        target_include_directories(${target} INTERFACE ${include})
        target_link_libraries(${target} INTERFACE ${ROOM_LINKS})
        return()
    endif()
    add_library(${target} STATIC ${sources})
    target_include_directories(${target} PUBLIC ${include})
    target_link_libraries(${target} PUBLIC ${ROOM_LINKS} PRIVATE ${ROOM_PRIVATE} varnhal_language)

    # The floor marks nothing that it exports: its headers are those of another system. All of it is visible, and who
    # links it says what is to be seen of it: a program shows only what it names (setup/exports.lst), the shared library
    # hides the floor's own namespace (cmake/pelkgui.map). Nobody replaces a function of it: one may go into another.
    if(directory MATCHES "^platform/")
        set_target_properties(${target} PROPERTIES CXX_VISIBILITY_PRESET default)
        target_compile_options(${target} PRIVATE -fno-semantic-interposition)
        set_property(GLOBAL APPEND PROPERTY VARNHAL_FLOOR ${target})
    endif()
endfunction()
