// The bytes that pictures are read from.
#pragma once

#include "windef.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace win32 {

// A whole file of at most 256 MB. Nothing, with the last error set: it cannot be read.
std::optional<std::vector<std::byte>> load_file(LPCSTR path);

// A resource of the module; empty, with the last error set, if there is none. It stays where it is for ever.
std::span<const std::byte> find_resource(HINSTANCE module, LPCSTR name, LPCSTR type);

} // namespace win32
