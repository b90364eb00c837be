// The framework's collections: arrays, lists and maps.
#pragma once

#include "afx.h"
#include "afx/array.h"
#include "afx/list.h"
#include "afx/map.h"
