# How everything of ours is compiled: C++20, warnings as errors, and the sanitizers a preset asks for.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# Small code starts fast, and the installer is to be little more than its payload: sources are optimised for size, but
# for the loops over pixels and characters.
if(PROJECT_IS_TOP_LEVEL)
    string(REPLACE "-O3" "-Os" CMAKE_CXX_FLAGS_RELEASE "${CMAKE_CXX_FLAGS_RELEASE}")
endif()
function(hot_sources)
    if(CMAKE_BUILD_TYPE STREQUAL "Release") # sources with options of their own stay out of unity builds
        set_property(SOURCE ${ARGN} APPEND PROPERTY COMPILE_OPTIONS -O3)
    endif()
endfunction()

find_package(Threads REQUIRED)
find_package(PkgConfig REQUIRED)

set(VARNHAL_SANITIZE "" CACHE STRING "Sanitizers for everything built here, e.g. address,undefined")

add_library(varnhal_language INTERFACE)
target_compile_options(varnhal_language INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough -Werror
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict> # g++ 12 sees overlaps in every inlined std::string operator+
    -ffunction-sections -fdata-sections)
target_link_options(varnhal_language INTERFACE -Wl,--gc-sections -Wl,--as-needed)
target_link_libraries(varnhal_language INTERFACE Threads::Threads)
if(VARNHAL_SANITIZE)
    target_compile_options(varnhal_language INTERFACE
        -fsanitize=${VARNHAL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(varnhal_language INTERFACE -fsanitize=${VARNHAL_SANITIZE})
endif()
