// The compiled resources embedded in the program, as they lie in its image.
#pragma once

#include <cstddef>
#include <span>

namespace win32 {

struct ProgramResources {
    std::span<const std::byte> bytes;
    // A read-only mapping of a file: its pages may be let go at any time, since the system reads them again.
    bool is_file_mapping = false;
};

// Empty when the program was linked without any. The bytes live in the image, a page read when it is first touched.
const ProgramResources& program_resources();

// Puts others in their place and returns the ones before. For tests; the bytes stay the caller's.
ProgramResources exchange_program_resources(const ProgramResources& other);

// Lets go of the memory behind the resources after a piece of them was read; they stay valid and come back page by page
// as they are touched. Does nothing for bytes that are not resources.
void release_resource_pages(std::span<const std::byte> piece);

} // namespace win32
