// The tasks of skinview that need no person: they write what they found to the stream and return the exit code.
#pragma once

#include "tools/skinview/Options.h"
#include "tools/skinview/SkinFile.h"
#include "tools/skinview/ViewWnd.h"

#include <iosfwd>

namespace skinview {

// Writes the report, a finding a line, and its sum.
void WriteReport(const SkinFile& skin, std::ostream& out);

// The target to show: what the options say, else the first one of the skin. Empty: there is no window skin.
std::string WindowToShow(const SkinFile& skin, const Options& options);

// Beside the skin, named after the window.
std::string IconFile(const SkinFile& skin, const std::string& strWindow);

// Gives the window the looks that the options ask for. False: there is no button of that name.
bool TakeLooks(ViewWnd& wnd, const Options& options);

int CheckOnly(const Options& options, std::ostream& out);
int WriteShot(const Options& options, std::ostream& out);
int WriteSheet(const Options& options, std::ostream& out);

} // namespace skinview
