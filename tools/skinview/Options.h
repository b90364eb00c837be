// What the command line of skinview says.
#pragma once

#include "tools/skinview/SkinReport.h"

#include <optional>

namespace skinview {

enum class Task { Show, Check, Shot, Sheet, Help, Version };

struct Options {
    Task task = Task::Show;
    std::filesystem::path skin;
    std::string strPicture; // where --shot or --sheet writes
    std::string strWindow;  // the target whose window skin is shown; empty: the skin's first
    int cx = 510;
    int cy = 349;
    bool bInactive = false;
    bool bMaximised = false;
    bool bDisabled = false;
    bool bChecked = false;
    std::optional<bool> rightToLeft; // none: as the skin says
    std::string strHover;            // the button that is hovered or pressed
    bool bPressed = false;
    Resources resources;
};

// Exit codes.
inline constexpr int kDone = 0;
inline constexpr int kNoSkin = 1;      // there is no window skin to show
inline constexpr int kUsage = 2;       // the command line is wrong
inline constexpr int kNotWritten = 3;  // the picture cannot be written
inline constexpr int kSomeSkipped = 4; // --check: something of the skin has no effect

extern const char kHelp[];

// None: it is wrong, and *pFault says how.
std::optional<Options> ReadOptions(const std::vector<std::string>& arguments, std::string* pFault);

} // namespace skinview
