// The framework's windows: device contexts and drawing objects, windows and frames, threads and the program.
#pragma once

#include "afx.h"

#include "afxwin/app.h"
#include "afxwin/cmd_target.h"
#include "afxwin/device_context.h"
#include "afxwin/frame.h"
#include "afxwin/gdi_object.h"
#include "afxwin/geometry.h"
#include "afxwin/mdi.h"
#include "afxwin/menu.h"
#include "afxwin/message_macros.h"
#include "afxwin/thread.h"
#include "afxwin/wnd.h"
