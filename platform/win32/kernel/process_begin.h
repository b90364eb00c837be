// What holds before the first line of a program runs, however it was started.
#pragma once

namespace win32 {

// Opens what is closed of the three standard descriptors, so that no file, socket or device of ours takes such a number
// and then gets what libraries print; and lets a limit on the size of files fail the write, not the process. Runs by
// itself before main.
void prepare_process();

} // namespace win32
