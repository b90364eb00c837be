// The font files that the program added for itself, whether or not text has been drawn yet.
#pragma once

#include "windef.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace win32 {

// The number of faces in a font file; 0: it is none.
int add_font_file(const std::string& path);
// False: it was not added, or removed as often.
bool remove_font_file(const std::string& path);
// Keeps a copy of the bytes as a file without a name. The number of faces; 0: they are no font.
int add_font_bytes(std::span<const std::byte> bytes);

// The paths of all that is added, and a number that changes with them.
struct AddedFonts {
    std::vector<std::string> paths;
    std::uint64_t version = 0;
};
AddedFonts added_fonts();
std::uint64_t added_fonts_version();

} // namespace win32
