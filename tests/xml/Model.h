// A second, slow reader of the same documents, written from the rules alone and sharing nothing with the library: it
// recurses, copies its text and keeps its attributes in a plain table. It gives the tree in the form of Trees.h.
#pragma once

#include <optional>
#include <string>

namespace test {

// "null" where the rules refuse the document.
std::string model_of(const std::string& text, bool strict);

} // namespace test
