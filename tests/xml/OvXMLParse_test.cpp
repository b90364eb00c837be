#include "tests/xml/Trees.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace {

using std::string;
using std::string_view;
using test::described;
using test::parsed;
using test::Tree;

struct DocumentCase {
    const char* why;
    string text;
    string tree;
};

void expect_trees(const auto& cases)
{
    for (const DocumentCase& c : cases) {
        SCOPED_TRACE(string(c.why) + ": " + c.text);
        EXPECT_EQ(described(parsed(c.text)), c.tree);
    }
}

TEST(OvXMLParse, Tags)
{
    const DocumentCase kCases[] = {
        { "an empty element", "<a/>", "a" },
        { "white space within and behind the slash", "< a / >", "a" },
        { "the four kinds of white space", " \t\r\n<\ta\n/\r>", "a" },
        { "vertical tab is none in markup", "<a\v/>", "null" },
        { "start and end tag", "<a></a>", "a" },
        { "white space before the start tag's end", "<a ></a>", "a" },
        { "every byte a name may have", "<aZ09:_-/>", "aZ09:_-" },
        { "a period ends a name", "<a.b/>", "null" },
        { "a name may begin with a digit", "<1/>", "1" },
        { "no name beyond ASCII", "<\xd6\xd0/>", "null" },
        { "no name", "<>", "null" },
        { "the end tag's letters are exact", "<a>x</A>", "null" },
        { "no white space in the end tag", "<a>x</a >", "null" },
        { "another element's end tag", "<a><b></a></b>", "null" },
        { "children in order", "<a><b/><c><d/></c><b/></a>", "a[b,c[d],b]" },
        { "no end tag", "<a>", "null" },
        { "text without an end tag", "<a>x", "null" },
        { "the end tag's beginning is enough at the end of the text", "<a>x</a", "a(x)" },
        { "its first byte is enough behind text", "<a>x<", "a(x)" },
        { "but begins a CDATA section without text", "<a><", "null" },
        { "its first two bytes are enough", "<a></", "a" },
        { "only the innermost end tag may be cut off", "<a><b></b", "null" },
        { "cut off after a child", "<a><b/></", "a[b]" },
        { "nothing", "", "null" },
        { "white space alone", " \n", "null" },
        { "text before the root", "x<a/>", "null" },
        { "what follows the root is not looked at", "<a/>]]><b", "a" },
        { "processing instruction inside", "<a><?p?></a>", "null" },
        { "DOCTYPE inside", "<a><!DOCTYPE a></a>", "null" },
        { "many unclosed tags", "<a><<<<", "null" },
    };
    expect_trees(kCases);
}

TEST(OvXMLParse, Attributes)
{
    const DocumentCase kCases[] = {
        { "either quote, no white space between", "<a b=\"1\"c='2'>x</a>", "a{b=1,c=2}(x)" },
        { "white space around the equal sign", "<a b \n= \t'1' />", "a{b=1}" },
        { "no quotes", "<a b=1/>", "null" },
        { "no value", "<a b/>", "null" },
        { "no name", "<a ='1'/>", "null" },
        { "an unclosed value", "<a b='1/>", "null" },
        { "closed by the other quote", "<a b='1\"/>", "null" },
        { "markup and the other quote in a value", "<a b='<\">' c=\"'\"/>", "a{b=<\">,c='}" },
        { "an empty value", "<a b=''/>", "a{b=}" },
        { "a repeated name in other letters", "<a B='1' b='2'/>", "a{b=2}" },
        // "a" and "r" share a bucket, "b" and "s" the one behind it, "c" has the next.
        { "buckets in order, in a bucket the newest first", "<a c='1' b='2' s='3' r='4' a='5'/>",
          "a{a=5,r=4,s=3,b=2,c=1}" },
        { "a repeated name keeps its place in the bucket", "<a b='1' s='2' B='3'/>", "a{s=2,B=3}" },
        { "white space in a value is folded", "<a b='\n x \t y\v'/>", "a{b=x y }" },
        { "references", "<a b='&lt;&quot;&#65;'/>", "a{b=<\"A}" },
        { "a hexadecimal reference stops the value", "<a b='&#x41;'/>", "null" },
        { "unless white space and the quote follow", "<a b='x&# '/>", "a{b=x}" },
        { "or the quote itself", "<a b='x&#'/>", "a{b=x}" },
        { "a number without semicolon takes the rest", "<a b='&#65 b' c='x'/>", "a{b=A,c=x}" },
        { "an unclosed number does not reach beyond the quote", "<a b='&#65' c=';'/>", "a{b=A,c=;}" },
        { "the end of the text", "<a b='1'", "null" },
    };
    expect_trees(kCases);
}

TEST(OvXMLParse, Content)
{
    const DocumentCase kCases[] = {
        { "folded, with one space left at the end", "<a>  x   y  </a>", "a(x y )" },
        { "all kinds of white space", "<a>x\t\n\v\f\r y</a>", "a(x y)" },
        { "white space alone is nothing", "<a> \n </a>", "a" },
        { "bytes beyond ASCII stay", "<a>\xd6\xd0 \xff</a>", "a(\xd6\xd0 \xff)" },
        { "runs are joined with a space", "<a>x<b/>y</a>", "a(x y)[b]" },
        { "joined once", "<a>x <b/> y</a>", "a(x y)[b]" },
        { "white space after a child leaves one", "<a>x<b/> </a>", "a(x )[b]" },
        { "a run that decodes to nothing still separates", "<a>x<b/>&</a>", "a(x )[b]" },
        { "nothing separates from nothing", "<a> <b/>x</a>", "a(x)[b]" },
        { "many runs", "<a>1<b/>2<b/>3<b/>4<b/>5<b/>6<b/>7<b/>8<b/>9</a>", "a(1 2 3 4 5 6 7 8 9)[b,b,b,b,b,b,b,b]" },
        { "comments separate", "<a>x<!-- <b> -->y<!----></a>", "a(x y)" },
        { "two dashes end no comment", "<a><!-- -- ></a>", "null" },
        { "the comment's own dashes do not end it", "<a><!--></a>", "null" },
        { "an unclosed comment", "<a><!-- </a>", "null" },
        { "CDATA is decoded", "<a><![CDATA[<&amp;>]]></a>", "a(<&>)" },
        { "and folded", "<a><![CDATA[ x \n y ]]></a>", "a(x y )" },
        { "white space around it", "<a> <![CDATA[x]]> </a>", "a(x)" },
        { "empty CDATA", "<a><![CDATA[]]></a>", "a" },
        { "empty CDATA still separates", "<a>x<b/><![CDATA[]]></a>", "a(x )[b]" },
        { "behind a child and a comment", "<a>x<b/><![CDATA[y]]><!----><![CDATA[z]]></a>", "a(x y z)[b]" },
        { "a child behind it", "<a><![CDATA[x]]> <b/></a>", "a(x)[b]" },
        { "text behind it", "<a><![CDATA[x]]>y</a>", "null" },
        { "text before it", "<a>y<![CDATA[x]]></a>", "null" },
        { "two in a row", "<a><![CDATA[x]]><![CDATA[y]]></a>", "null" },
        { "unclosed", "<a><![CDATA[x]]</a>", "null" },
        { "a faulty reference cuts it short, no more", "<a><![CDATA[x&#y]]></a>", "a(x)" },
        { "the end tag cut off behind it", "<a><![CDATA[x]]><", "a(x)" },
        { "the end of the text behind it", "<a><![CDATA[x]]>", "null" },
    };
    expect_trees(kCases);
}

TEST(OvXMLParse, References)
{
    const DocumentCase kCases[] = {
        { "every name", "<a>&amp;&lt;&gt;&quot;&apos;.&nbsp;.</a>", "a(&<>\"'. .)" },
        { "in any letters", "<a>&AMP;&Lt;&NbSp;</a>", "a(&< )" },
        { "a decoded space is not folded", "<a>&nbsp;&nbsp;x &nbsp;</a>", "a(  x  )" },
        { "unknown names stay", "<a>&copy;&amp</a>", "a(&copy;&amp)" },
        { "decoding goes on behind an unknown one", "<a>&&amp;&&</a>", "a(&&&)" },
        { "at the end it goes", "<a>x&</a>", "a(x)" },
        { "numbers", "<a>&#65;&#233;&#0065;</a>",
          "a(A\xe9"
          "A)" },
        { "the low 8 bits", "<a>&#321;&#4294967361;&#99999999999999999999;</a>", "a(AA\xff)" },
        { "up to the next semicolon", "<a>&#65 x;y</a>", "a(Ay)" },
        { "or to the end of the run", "<a>&#65 x<b/>;y</a>", "a(A ;y)[b]" },
        { "a zero byte is kept", "<a>x&#0;y</a>", string("a(x\0y)", 6) },
        { "hexadecimal", "<a>&#x41;</a>", "null" },
        { "no number at the run's end", "<a>x&#</a>", "a(x)" },
        { "no number", "<a>&#;</a>", "null" },
        { "white space behind the sign", "<a>&# </a>", "null" },
    };
    expect_trees(kCases);
}

TEST(OvXMLParse, Prolog)
{
    const struct {
        const char* why;
        const char* text;
        bool strict;
        bool loose;
    } kCases[] = {
        { "no declaration", "<a/>", false, true },
        { "a declaration", "<?xml version=\"1.0\"?><a/>", true, true },
        { "nothing else in it counts", " <?xml version=\"x <a> ?><a/>", true, true },
        { "single quotes", "<?xml version='1.0'?><a/>", false, false },
        { "unclosed", "<?xml version=\"1.0\"><a/>", false, false },
        { "in other letters", "<?XML version=\"1.0\"?><a/>", false, false },
        { "comments and a DOCTYPE", "<?xml version=\"1\"?><!--1--> <!--2--><!DOCTYPE a> <!--3--><a/>", true, true },
        { "two DOCTYPEs", "<?xml version=\"1\"?><!DOCTYPE a><!DOCTYPE a><a/>", false, false },
        { "an internal subset with \">\"", "<?xml version=\"1\"?><!DOCTYPE a [<!ENTITY b \"c\">]><a/>", false, false },
        { "an unclosed DOCTYPE", "<?xml version=\"1\"?><!DOCTYPE a", false, false },
        { "an unclosed comment", "<?xml version=\"1\"?><!-- <a/>", false, false },
        { "an unclosed comment behind the DOCTYPE", "<?xml version=\"1\"?><!DOCTYPE a><!-- <a/>", false, false },
        { "only the beginning of the token", "<?xml vers", false, false },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(described(parsed(c.text, TRUE)), c.strict ? "a" : "null");
        EXPECT_EQ(described(parsed(c.text, FALSE)), c.loose ? "a" : "null");
    }
    EXPECT_EQ(OvXMLElement::FromString(nullptr, FALSE), nullptr);
}

// The text stands at the end of its allocation: a read beyond it is seen by the address sanitizer.
TEST(OvXMLParse, CutAtEveryByte)
{
    const string text = "<?xml version=\"1.0\"?><!-- c --><!DOCTYPE a><a b='x &amp; y' C=\"&#65;\">t<b/> u <!-- d -->"
                        "<![CDATA[ v ]]><c d='e'> w </c> &lt; </a>";
    for (size_t length = 0; length < text.size(); length++) {
        SCOPED_TRACE(text.substr(0, length));
        const auto cut = std::make_unique<char[]>(length + 1);
        text.copy(cut.get(), length);
        const string_view part(cut.get());
        // Behind the root's text a "<" can begin its end tag.
        const bool end_tag_begun =
            length > text.rfind('<') || part.ends_with(">t<") || part.ends_with("> u <") || part.ends_with("]]><");
        EXPECT_EQ(Tree(OvXMLElement::FromString(cut.get(), FALSE)) != nullptr, end_tag_begun);
    }
    EXPECT_EQ(described(parsed(text)), "a{b=x & y,C=A}(t u v < )[b,c{d=e}(w )]");
}

// What a derived class can call, called by one.
class Opened : public OvXMLElement {
public:
    using OvXMLNode::ParseIdentifier;
    using OvXMLNode::ParseMatch;
};

TEST(OvXMLParse, Tokens)
{
    const struct {
        const char* why;
        const char* text;
        const char* token;
        int moved; // -1: no match
    } kCases[] = {
        { "as it stands", "<ab", "<a", 2 },
        { "behind white space", " \t\r\n<a", "<a", 6 },
        { "other letters", "<A", "<a", -1 },
        { "a text that ends within it", "<!", "<!--", 2 },
        { "a text that ended", "", "<", -1 },
        { "white space alone", "  ", "<", -1 },
        { "a mismatch moves nothing", "  x", "<", -1 },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        const char* cursor = c.text;
        EXPECT_EQ(Opened::ParseMatch(cursor, c.token) != 0, c.moved >= 0);
        EXPECT_EQ(cursor - c.text, std::max(c.moved, 0));
    }
    const char* cursor = " \na-1.b";
    CString name("before");
    EXPECT_TRUE(Opened::ParseIdentifier(cursor, name));
    EXPECT_EQ(name, "a-1");
    EXPECT_FALSE(Opened::ParseIdentifier(cursor, name));
    EXPECT_STREQ(cursor, ".b");
}

TEST(OvXMLParse, RunsOfText)
{
    const struct {
        const char* why;
        const char* text;
        int length;
        const char* value;
        const char* rest;
    } kCases[] = {
        { "only the run", "x y z", 3, "x y", " z" },
        { "no length", "xyz", 0, "", "xyz" },
        { "longer than the text", "x &lt;", 99, "x <", "" },
        { "a reference cut off by the run's end", "&lt;", 3, "&lt", ";" },
        { "stops behind a sign without a number", "a&#x1;", 6, "a", "x1;" },
        { "white space up to the run's end", "a    b", 3, "a ", "  b" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        const char* cursor = c.text;
        EXPECT_EQ(OvXMLNode::StringToValue(cursor, c.length), c.value);
        EXPECT_STREQ(cursor, c.rest);
    }
}

TEST(OvXMLParse, OneElementIntoAnother)
{
    OvXMLElement parent(nullptr, "parent");
    OvXMLElement element(&parent, "before");
    const char* cursor = " <a c='1' b='2' s='3'>x<b/></a> rest";
    EXPECT_TRUE(element.ParseString(cursor));
    EXPECT_STREQ(cursor, " rest");
    EXPECT_EQ(described(&element), "a{s=3,b=2,c=1}(x)[b]");
    EXPECT_EQ(element.GetParent(), &parent);
    EXPECT_EQ(element.GetFirstElement()->GetParent(), &element);
    EXPECT_EQ(element.GetAttribute("s")->GetParent(), &element);

    OvXMLElement broken;
    cursor = "<a><b><c/></b><d><e/><f></d></a>";
    EXPECT_FALSE(broken.ParseString(cursor));
    EXPECT_EQ(described(&broken), "a[b[c]]") << "what was complete stays";
}

TEST(OvXMLParse, OneAttribute)
{
    const struct {
        const char* text;
        bool good;
        const char* name;
        const char* value;
    } kCases[] = {
        { " b = 'x &gt;  y'/>", true, "b", "x > y" },
        { "b=\"\"", true, "b", "" },
        { "b=x", false, "b", "" },
        { "='x'", false, "old", "" },
        { "b='x", false, "b", "" },
        { "b='x&#y'", false, "b", "x" },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.text);
        OvXMLAttribute attribute(nullptr, "old");
        const char* cursor = c.text;
        EXPECT_EQ(attribute.ParseString(cursor) != 0, c.good);
        EXPECT_EQ(attribute.GetName(), c.name);
        EXPECT_EQ(attribute.GetValue(), c.value);
    }
}

} // namespace
