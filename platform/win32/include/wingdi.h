// gdi: device contexts, bitmaps, drawing, regions, text.
#pragma once

#include "windef.h"
