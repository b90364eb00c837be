// Saves pictures for people to look at: the memory screen's, and those of tests that failed.
#pragma once

#include "platform/win32/screen/screen.h"

#include <string>

namespace win32 {

// Writes a 24-bit PNG, not compressed. An older file is replaced when the new one is whole. False: it could not be
// written, and no part of it stays.
bool save_png(const std::string& path, const PixelView& picture);

} // namespace win32
