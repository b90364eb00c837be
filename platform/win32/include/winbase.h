// kernel: files, folders, resources, threads, waits, processes, time.
#pragma once

#include "windef.h"
