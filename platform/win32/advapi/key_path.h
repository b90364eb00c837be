// Names of registry keys and values: how a path falls into components, and when two names are the same.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace win32 {

inline constexpr std::size_t kMostKeyNameBytes = 255;
inline constexpr std::size_t kMostKeyDepth = 512;
inline constexpr std::size_t kMostValueNameBytes = 16383;

// The components of a path below a key: none for null or empty text. `\` separates, except as the second byte of a
// character of the process's code page; one at the end is ignored. Nothing if a component is empty or too long, or
// there are too many.
std::optional<std::vector<std::string>> split_key_path(const char* text);

// The form in which names are compared: lower case in the process's code page.
std::string folded(std::string name);

} // namespace win32
