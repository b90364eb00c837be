#include "tests/xml/Trees.h"

#include <string>

#include <gtest/gtest.h>

namespace {

using std::string;
using test::bytes_of;
using test::parsed;
using test::Tree;

TEST(OvXMLWrite, WritesTrees)
{
    const struct {
        const char* why;
        const char* tree;
        int declaration;
        int newlines;
        const char* text;
    } kCases[] = {
        { "nothing in it", "<a/>", 0, 0, "<a/>" },
        { "a declaration", "<a/>", 1, 0, "<?xml version=\"1.0\"?><a/>" },
        { "a declaration and lines", "<a/>", 1, 1, "<?xml version=\"1.0\"?>\r\n<a/>\r\n" },
        { "lines without a declaration begin with one", "<a/>", 0, 1, "\r\n<a/>\r\n" },
        { "text alone stays on its line", "<a>x</a>", 0, 1, "\r\n<a>x</a>\r\n" },
        { "text behind the children", "<a>x<b/></a>", 0, 0, "<a><b/>x</a>" },
        { "likewise with lines", "<a>x<b/></a>", 0, 1, "\r\n<a>\r\n<b/>\r\nx</a>\r\n" },
        { "children in children", "<a><b><c/></b><d/></a>", 0, 1,
          "\r\n<a>\r\n<b>\r\n<c/>\r\n</b>\r\n<d/>\r\n</a>\r\n" },
        { "attributes in their order", "<a c='1' b='2'>x</a>", 0, 0, "<a b=\"2\" c=\"1\">x</a>" },
        { "escaped in both places", "<a b='&quot;&lt;'>&amp;&gt;&apos;</a>", 0, 0,
          "<a b=\"&quot;&lt;\">&amp;&gt;&apos;</a>" },
        { "bytes beyond ASCII", "<a>\xd6\xd0</a>", 0, 0, "<a>&#214;&#208;</a>" },
        { "a zero byte ends the text of a value that is there", "<a b='x&#0;y'>&#0;</a>", 0, 0, "<a b=\"x\"></a>" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        const Tree tree = parsed(c.tree);
        EXPECT_EQ(bytes_of(tree->ToString(c.declaration, c.newlines)), c.text);
    }
}

TEST(OvXMLWrite, AppendsToText)
{
    CString text("before ");
    const Tree tree = parsed("<a b='1'><c/></a>");
    tree->ToString(text, 0);
    tree->GetAttribute("b")->ToString(text);
    OvXMLNode::ValueToString("<\x80\x7f\xff\t\r\n&'\">", text);
    OvXMLNode::ValueToString(nullptr, text);
    EXPECT_EQ(text, "before <a b=\"1\"><c/></a>b=\"1\"&lt;&#128;\x7f&#255;\t\r\n&amp;&apos;&quot;&gt;");

    CString own("a<b>c&d 'e' \"f\"");
    OvXMLNode::ValueToString(own, own);
    EXPECT_EQ(own, "a<b>c&d 'e' \"f\"a&lt;b&gt;c&amp;d &apos;e&apos; &quot;f&quot;") << "a text behind itself";

    OvXMLElement odd(nullptr, "not a name<");
    EXPECT_EQ(odd.ToString(0, 0), "<not a name</>") << "names are written as they are";
}

TEST(OvXMLWrite, ComesBackByteForByte)
{
    for (int byte = 1; byte < 0x100; byte++) {
        OvXMLElement element(nullptr, "a");
        const string value = string("x").append(1, static_cast<char>(byte)).append("y");
        element.SetValue(value.c_str());
        element.AddAttribute("b", value.c_str());
        const Tree back = parsed(bytes_of(element.ToString(0, 0)));
        ASSERT_TRUE(back) << byte;
        const string expected = byte >= '\t' && byte <= '\r' ? "x y" : value; // white space is folded
        EXPECT_EQ(bytes_of(back->GetValue()), expected) << byte;
        EXPECT_EQ(bytes_of(back->GetAttributeValue("b", "")), expected) << byte;
    }
}

TEST(OvXMLWords, AreCollected)
{
    const struct {
        const char* why;
        const char* tree;
        const char* words;
    } kCases[] = {
        { "attributes, children, then the text", "<a b='1' c='2'>x<d e='3'>y</d>z</a>", "1 2 3 y x z" },
        { "prefixed names and check sums are left out", "<a xmlns:x='1' sha1='2' title='3' Sha1x='4'/>", "3 4" },
        { "an empty value between others", "<a a='1' b='' c='3'/>", "1  3" },
        { "empty values at the ends are trimmed", "<a a='' b='2' c=''/>", "2" },
        { "nothing", "<a/>", "" },
        { "no text, no space", "<a><b/><c>x</c><d/></a>", "x" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        const Tree tree = parsed(c.tree);
        EXPECT_EQ(bytes_of(tree->GetRecursiveWords()), c.words);
    }
    CString words(" first");
    parsed("<a b='1'>x </a>")->AddRecursiveWords(words);
    EXPECT_EQ(words, " first 1 x ");
}

TEST(OvXMLWords, AreNormalised)
{
    const struct {
        const char* text;
        const char* normal;
    } kCases[] = {
        { "a\t\tb!?", "a b" },
        { "x (y)", "x (y)" },
        { "  a  ", "a" },
        { " \t ", "" },
        { "", "" },
        { "a !?", "a " }, // what stood behind the space went
        { "! a", "a" },
        { "a ! b", "a b" },
        { "a\x01\x1f"
          "b\x7f",
          "a b" },
        { "\"'-&/,;#()", "\"'-&/,;#()" },
        { "*.:<>=[]{}|_~`@$%^+\\?!", "" },
        { "AZaz09", "AZaz09" },
        { "\x80\xa0\xbf\xc0\xd6\xff", "\xc0\xd6\xff" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.text);
        CString text(c.text);
        OvXMLNode::UniformString(text);
        EXPECT_EQ(text, c.normal);
    }
}

} // namespace
