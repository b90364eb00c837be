// The program's own module handle: the address that Windows documents as the usual one, so that texts made of it are
// the same in every run.
#pragma once

#include "windef.h"

namespace win32 {

HMODULE program_module();

// Whether the handle names the program; null does too.
bool is_program_module(HMODULE module);

} // namespace win32
