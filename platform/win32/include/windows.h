// Everything of the Windows interface that the system asks of kernel, user, gdi and advapi.
#pragma once

#include "windef.h"

#include "winbase.h"
#include "wingdi.h"
#include "winnls.h"
#include "winreg.h"
#include "winuser.h"
