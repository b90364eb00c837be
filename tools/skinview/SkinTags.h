// Where the elements of an XML text stand. The document tree keeps no lines, and a text that is no document makes no
// tree at all; the author of a skin needs both.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace skinview {

struct TagScan {
    std::vector<int> lines; // of the start tags, in document order, counted from 1
    // Why the text is no document: the first tag that does not fit, and its line. Empty: all tags fit each other.
    std::string strFault;
    int nFaultLine = 0;
};

// Reads tags up to the end of the root element, stepping over declaration, comments, CDATA and DOCTYPE.
TagScan ScanTags(std::string_view text);

} // namespace skinview
