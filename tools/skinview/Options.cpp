#include "tools/skinview/Options.h"

#include <charconv>

namespace skinview {

const char kHelp[] = R"(skinview shows a skin in a window and tells what of it is not used, and why.

  skinview [OPTION...] SKIN.xml

The window follows the skin: when one of its files changes, it is read again.
Keys in the window:
  A  active or inactive look          H  the next look of a button: hovered, pressed
  L  left to right or right to left   D  buttons disabled or enabled
  M  maximised or not                 R  read the skin again
  Esc  close

Instead of the window:
  --check            only tell what is not used
  --shot FILE.png    draw the window, and end
  --sheet FILE.png   draw everything that the window skin has on one sheet, and end
  --help, --version  tell this, or the version, and end

What is shown:
  --window NAME      the window skin of that target (the first one)
  --size WxH         the window's size, or that of the screen with --maximised (510x349)
  --inactive         the look of a window that is not the active one
  --maximised
  --ltr, --rtl       a layout other than the skin's
  --hover NAME       the pointer is on that button: Close, _Open
  --down NAME        and presses it
  --checked, --disabled   all command buttons
  --res ID=FILE.bmp  the bitmap that the skin takes from its program

The report names the file, the line and how much it matters: "error", and the skin or the window skin is not there;
"skipped", and something that is written has no effect; "note", and it has another one than it seems.

Exit codes: 0 done, 1 there is no window skin to show, 2 the command line is wrong, 3 the picture cannot be written,
4 --check found something that is skipped.
)";

namespace {

bool ReadNumber(std::string_view text, int nLargest, int* pNumber)
{
    const auto [pEnd, error] = std::from_chars(text.data(), text.data() + text.size(), *pNumber);
    return error == std::errc() && pEnd == text.data() + text.size() && *pNumber > 0 && *pNumber <= nLargest;
}

bool ReadSize(const std::string& strText, Options* pOptions)
{
    constexpr int kLargest = 8192;
    const size_t nBy = std::min(strText.find('x'), strText.size());
    return nBy < strText.size() && ReadNumber(std::string_view(strText).substr(0, nBy), kLargest, &pOptions->cx) &&
           ReadNumber(std::string_view(strText).substr(nBy + 1), kLargest, &pOptions->cy);
}

bool ReadResource(const std::string& strText, Options* pOptions)
{
    int nID = 0;
    const size_t nIs = strText.find('=');
    if (nIs == std::string::npos || nIs + 1 == strText.size() ||
        !ReadNumber(std::string_view(strText).substr(0, nIs), 0xFFFF, &nID))
        return false;
    pOptions->resources[static_cast<unsigned long>(nID)] = strText.substr(nIs + 1);
    return true;
}

struct Flag {
    std::string_view name;
    void (*pfnSet)(Options&);
};
constexpr Flag kFlags[] = {
    { "--help", [](Options& o) { o.task = Task::Help; } },
    { "--version", [](Options& o) { o.task = Task::Version; } },
    { "--check", [](Options& o) { o.task = Task::Check; } },
    { "--inactive", [](Options& o) { o.bInactive = true; } },
    { "--maximised", [](Options& o) { o.bMaximised = true; } },
    { "--disabled", [](Options& o) { o.bDisabled = true; } },
    { "--checked", [](Options& o) { o.bChecked = true; } },
    { "--ltr", [](Options& o) { o.rightToLeft = false; } },
    { "--rtl", [](Options& o) { o.rightToLeft = true; } },
};

struct Setting {
    std::string_view name;
    bool (*pfnSet)(const std::string& strValue, Options*);
};
constexpr Setting kSettings[] = {
    { "--shot",
      [](const std::string& strValue, Options* pOptions) {
          pOptions->task = Task::Shot;
          pOptions->strPicture = strValue;
          return true;
      } },
    { "--sheet",
      [](const std::string& strValue, Options* pOptions) {
          pOptions->task = Task::Sheet;
          pOptions->strPicture = strValue;
          return true;
      } },
    { "--window",
      [](const std::string& strValue, Options* pOptions) {
          pOptions->strWindow = strValue;
          return true;
      } },
    { "--hover",
      [](const std::string& strValue, Options* pOptions) {
          pOptions->strHover = strValue;
          return true;
      } },
    { "--down",
      [](const std::string& strValue, Options* pOptions) {
          pOptions->strHover = strValue;
          pOptions->bPressed = true;
          return true;
      } },
    { "--size", ReadSize },
    { "--res", ReadResource },
};

template <class Entry, size_t nCount>
const Entry* Find(const Entry (&entries)[nCount], std::string_view name)
{
    for (const Entry& entry : entries) {
        if (entry.name == name)
            return &entry;
    }
    return nullptr;
}

} // namespace

std::optional<Options> ReadOptions(const std::vector<std::string>& arguments, std::string* pFault)
{
    Options options;
    for (size_t i = 0; i < arguments.size(); i++) {
        const std::string& strArgument = arguments[i];
        if (const Flag* const pFlag = Find(kFlags, strArgument)) {
            pFlag->pfnSet(options);
        } else if (const Setting* const pSetting = Find(kSettings, strArgument)) {
            if (i + 1 == arguments.size() || arguments[i + 1].empty()) {
                *pFault = strArgument + " needs a value";
                return std::nullopt;
            }
            if (!pSetting->pfnSet(arguments[++i], &options)) {
                *pFault = strArgument + " cannot be " + arguments[i];
                return std::nullopt;
            }
        } else if (strArgument.starts_with('-') || !options.skin.empty()) {
            *pFault = strArgument + " is one thing too many";
            return std::nullopt;
        } else {
            options.skin = strArgument;
        }
    }
    const bool bWithoutSkin = options.task == Task::Help || options.task == Task::Version;
    if (options.skin.empty() && !bWithoutSkin) {
        *pFault = "which skin?";
        return std::nullopt;
    }
    return options;
}

} // namespace skinview
