# add_resources(target file.rc [DEPENDS files the script names...] [INCLUDES directories...])
# Compiles a resource script to the standard .res form and embeds it whole in the program. A program without resources
# links as well, and finds none. Part of the library's package, for programs outside this tree.
#
# The script is preprocessed by the C compiler (llvm-rc would want clang for it), then compiled by llvm-rc to a temporary
# that is renamed when whole: on an error llvm-rc leaves a partial file behind. llvm-rc writes no dependency file, so the
# data files a script names are listed by the caller. It runs where its files are and is given bare names: it takes a
# path that begins like one of its options for that option (/check/... for /c).
function(add_resources target script)
    cmake_parse_arguments(RES "" "" "DEPENDS;INCLUDES" ${ARGN})
    find_program(LLVM_RC NAMES llvm-rc-14 llvm-rc REQUIRED)
    get_filename_component(script ${script} ABSOLUTE)
    get_filename_component(script_dir ${script} DIRECTORY)
    set(base ${CMAKE_CURRENT_BINARY_DIR}/${target})
    set(include_flags)
    set(rc_flags)
    foreach(dir ${script_dir} ${RES_INCLUDES})
        list(APPEND include_flags -I${dir})
        list(APPEND rc_flags /I ${dir})
    endforeach()
    add_custom_command(OUTPUT ${base}.pre.rc
        COMMAND ${CMAKE_CXX_COMPILER} -E -P -undef -xc -DRC_INVOKED -MD -MF ${base}.pre.rc.d -MT ${base}.pre.rc
                ${include_flags} ${script} -o ${base}.pre.rc
        DEPENDS ${script} DEPFILE ${base}.pre.rc.d VERBATIM)
    add_custom_command(OUTPUT ${base}.res
        COMMAND ${LLVM_RC} /no-preprocess /C 65001 ${rc_flags} /FO ${target}.res.tmp ${target}.pre.rc
        COMMAND ${CMAKE_COMMAND} -E rename ${base}.res.tmp ${base}.res
        WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR} DEPENDS ${base}.pre.rc ${RES_DEPENDS} VERBATIM)
    set(RES_FILE ${base}.res)
    configure_file(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/resources.cpp.in ${base}.res.cpp @ONLY)
    set_source_files_properties(${base}.res.cpp PROPERTIES OBJECT_DEPENDS ${base}.res
        SKIP_UNITY_BUILD_INCLUSION ON SKIP_PRECOMPILE_HEADERS ON)
    target_sources(${target} PRIVATE ${base}.res.cpp)
endfunction()
