// The framework's base: objects that know their class, strings, exceptions, files and archives.
#pragma once

#include "afx/afx_string.h"
#include "afx/archive.h"
#include "afx/exception.h"
#include "afx/file.h"
#include "afx/object.h"
