// The framework's common controls.
#pragma once

#include "afxwin.h"

#include "afxcmn/image_list.h"
