// What the author of a skin should know of it: everything that the loader leaves out, stops at or takes otherwise than
// it looks. The loader itself says nothing; this walks the document beside it by the same rules.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace skinview {

enum class Weight {
    Fails,   // the whole skin, or a window skin, is not there
    Skipped, // something that is written has no effect
    Noted,   // all of it has an effect, but hardly the one that is meant
};

struct Finding {
    Weight weight;
    int nLine;                // of the element, from 1; 0: not known
    std::string strElement;   // its name, and what tells it from its like: part "TopLeft"
    std::string strAttribute; // empty: it is the element itself
    std::string strValue;     // as written
    std::string strRule;      // the rule that it breaks, and what comes of it
};

// Bitmaps for the "res" numbers of a skin that lies in another program.
using Resources = std::map<unsigned long, std::filesystem::path>;

struct SkinReport {
    std::vector<Finding> findings;            // in document order
    std::vector<std::filesystem::path> files; // that the skin names, whether they are there or not
    std::vector<std::string> windows;         // the targets of the window skins that are kept, each once

    int Count(Weight weight) const;
};

// Checks the text of a skin whose file names count from the folder. No fault of the text is too odd for it.
SkinReport CheckSkin(const std::string& strText, const std::filesystem::path& folder, const Resources& resources = {});

// FILE:LINE: skipped: part "TopLeft", rect="1,2": only 2 of 4 numbers can be read ... In UTF-8, without a line feed.
std::string TextOf(const Finding& finding, const std::string& strFile);

} // namespace skinview
