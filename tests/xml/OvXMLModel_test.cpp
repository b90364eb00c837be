#include "tests/xml/Model.h"
#include "tests/xml/Trees.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

namespace {

using std::string;

// Pieces that documents are made of, the bytes of markup among them far more often than in any real one.
const char* const kPieces[] = {
    "<a>",
    "</a>",
    "<b>",
    "</b>",
    "<a",
    "<b/>",
    "</",
    "<",
    ">",
    "/",
    "/>",
    "a",
    "b",
    "R",
    " b='",
    " r=\"",
    "'",
    "\"",
    " A = '",
    "=",
    " ",
    "\n",
    "\v",
    "&",
    "&lt;",
    "&#",
    "&#65",
    ";",
    "&#x41",
    "&amp;",
    "&NBSP;",
    "&nope;",
    "<![CDATA[",
    "]]>",
    "<!--",
    "-->",
    "!",
    "x",
    "y ",
    "\xd6",
    "&#0;",
    "<!DOCTYPE",
    "<?xml version=\"",
    "?>",
    " s='1'",
    " c='2'",
    "--",
    "#",
};

string random_document(std::mt19937& random)
{
    const auto below = [&random](size_t limit) { return static_cast<size_t>(random() % limit); };
    string text = below(3) ? "<a>" : "";
    for (size_t left = below(24); left > 0; left--) {
        const size_t piece = below(std::size(kPieces) + 24);
        text += piece < std::size(kPieces) ? kPieces[piece] : kPieces[piece % 8]; // tags more often than the rest
    }
    return text + (below(4) ? "</a>" : "");
}

TEST(OvXMLModel, AgreesOnRandomDocuments)
{
    std::mt19937 random(20260401);
    int trees = 0;
    for (int i = 0; i < 100000; i++) {
        const string text = random_document(random);
        const bool strict = i % 16 == 0;
        const string expected = test::model_of(text, strict);
        trees += expected != "null";
        ASSERT_EQ(test::described(test::parsed(text, strict)), expected) << text;
    }
    EXPECT_GT(trees, 10000) << "too few of the documents are any";
}

// Documents that are mostly good, a byte of each exchanged.
TEST(OvXMLModel, AgreesOnSpoiltDocuments)
{
    const string good = "<?xml version=\"1.0\"?><!-- c --><!DOCTYPE a><a b='x &amp; y' r=\"&#65;\" s='1'>t<b a='2'/> u "
                        "<!-- d --><![CDATA[ v ]]><b r='e'> w </b> &lt; </a>";
    const string bytes = "<>/&;'\"= !-[]#a1\n\xd6";
    for (size_t i = 0; i < good.size(); i++) {
        for (const char byte : bytes) {
            string text = good;
            text[i] = byte;
            ASSERT_EQ(test::described(test::parsed(text)), test::model_of(text, false)) << text;
        }
    }
}

} // namespace
