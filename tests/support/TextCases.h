// Tables of texts and what they come to, a fault a row.
#pragma once

#include <string>

#include <gtest/gtest.h>

namespace test {

struct TextCase {
    const char* why;
    std::string text;
    std::string expected;
};

// Compares what the function makes of each text with what it should be.
template <class Cases, class Function>
void expect_each(const Cases& cases, Function function)
{
    for (const TextCase& c : cases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(std::string(function(c.text)), c.expected) << c.text.substr(0, 200);
    }
}

} // namespace test
