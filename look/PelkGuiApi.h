// PELKGUI_API marks the classes and functions that the skin library exports by name. Everything else stays hidden, as
// the whole library is compiled that way.
#pragma once

#define PELKGUI_API __attribute__((visibility("default")))
