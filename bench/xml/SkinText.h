// Documents for measuring: skins of any size, with the sections, names and values of real ones.
#pragma once

#include <cstddef>
#include <string>

// At least that many bytes; the same text every time.
std::string SkinText(std::size_t size);
