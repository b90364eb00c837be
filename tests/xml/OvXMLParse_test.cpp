#include "tests/support/HashOrder.h"
#include "tests/support/TextCases.h"
#include "tests/xml/Trees.h"

#include <algorithm>
#include <cctype>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace {

using std::string;
using test::described;
using test::expect_each;
using test::parsed;
using test::TextCase;

// The rules as a reader meets them; what else they come to is compared with a model below.
TEST(OvXMLParse, Documents)
{
    const TextCase kCases[] = {
        { "white space, of four kinds, before every token", " \t\r\n<\ta\n b \r= '1' / >", "a{b=1}" },
        { "every byte a name may have", "<1aZ09:_-/>", "1aZ09:_-" },
        { "a period ends a name", "<a.b/>", "null" },
        { "the end tag's letters are exact", "<a>x</A>", "null" },
        { "no white space in the end tag", "<a>x</a >", "null" },
        { "children in order", "<a><b/><c><d/></c><b/></a>", "a[b,c[d],b]" },
        { "the end tag's beginning is enough at the end of the text", "<a>x</", "a(x)" },
        { "its first byte begins a CDATA section without text", "<a><", "null" },
        { "only the innermost end tag may be cut off", "<a><b></b", "null" },
        { "what follows the root is not looked at", "<a/>]]><b", "a" },
        { "either quote, no white space between", "<a b=\"'\"c='\"<>'>x</a>", "a{b=',c=\"<>}(x)" },
        // "a" and "r" share a bucket, "b" and "s" the one behind it, "c" has the next.
        { "buckets in order, in a bucket the newest first", "<a c='1' b='2' s='3' r='4' a='5'/>",
          "a{a=5,r=4,s=3,b=2,c=1}" },
        { "a repeated name, in other letters, keeps its place", "<a b='1' s='2' B='3'/>", "a{s=2,B=3}" },
        { "white space in a value is folded", "<a b='\n x \t y\v'/>", "a{b=x y }" },
        { "a hexadecimal reference stops the value", "<a b='&#x41;'/>", "null" },
        { "unless white space and the quote follow", "<a b='x&# '/>", "a{b=x}" },
        { "a number without semicolon takes the rest", "<a b='&#65 b' c=';'/>", "a{b=A,c=;}" },
        { "text is folded, one space is left at the end", "<a>  x \n\v\f y  </a>", "a(x y )" },
        { "runs are joined with one space", "<a>x <b/>y<!-- <b> -->\xd6\xd0</a>", "a(x y \xd6\xd0)[b]" },
        { "a run that decodes to nothing still separates", "<a>x<b/>&</a>", "a(x )[b]" },
        { "the comment's own dashes do not end it", "<a><!--></a>", "null" },
        { "CDATA is decoded and folded", "<a> <![CDATA[ <&amp; \n > ]]> <b/></a>", "a(<& > )[b]" },
        { "no text beside it", "<a><![CDATA[x]]>y</a>", "null" },
        { "a faulty reference cuts it short, no more", "<a><![CDATA[x&#y]]></a>", "a(x)" },
        { "every name", "<a>&amp;&lt;&gt;&quot;&apos;.&NbSp;.</a>", "a(&<>\"'. .)" },
        { "a decoded space is not folded", "<a>&nbsp;&nbsp;x &nbsp;</a>", "a(  x  )" },
        { "unknown names stay, decoding goes on behind them", "<a>&copy;&&amp;&</a>", "a(&copy;&&)" },
        { "numbers, of which the low 8 bits count", "<a>&#0065;&#321;&#4294967361;&#99999999999999999999;</a>",
          "a(AAA\xff)" },
    };
    expect_each(kCases, [](const string& text) { return described(parsed(text)); });
    EXPECT_EQ(described(parsed("<a>x&#0;y</a>")), string("a(x\0y)", 6)) << "a zero byte is kept";
    string text = "<a>1";
    for (int i = 2; i < 100; i++) // the room for the text grows
        text += "<b/>" + std::to_string(i);
    EXPECT_EQ(test::bytes_of(parsed(text + "</a>")->GetValue()).substr(260), " 91 92 93 94 95 96 97 98 99");
}

TEST(OvXMLParse, Prolog)
{
    const TextCase kCases[] = {
        { "no declaration", "<a/>", "null a" },
        { "nothing else in it counts", " <?xml version=\"x <a> ?><a/>", "a a" },
        { "single quotes", "<?xml version='1.0'?><a/>", "null null" },
        { "in other letters", "<?XML version=\"1.0\"?><a/>", "null null" },
        { "comments and a DOCTYPE", "<?xml version=\"1\"?><!--1--> <!--2--><!DOCTYPE a> <!--3--><a/>", "a a" },
        { "two DOCTYPEs", "<?xml version=\"1\"?><!DOCTYPE a><!DOCTYPE a><a/>", "null null" },
        { "an internal subset with \">\"", "<?xml version=\"1\"?><!DOCTYPE a [<!ENTITY b \"c\">]><a/>", "null null" },
        { "an unclosed comment behind the DOCTYPE", "<?xml version=\"1\"?><!DOCTYPE a><!-- <a/>", "null null" },
    };
    expect_each(kCases, [](const string& text) { // strictly, loosely
        return described(parsed(text, TRUE)) + " " + described(parsed(text, FALSE));
    });
    EXPECT_EQ(OvXMLElement::FromString(nullptr, FALSE), nullptr);
}

// What a derived class can call, called by one.
class Opened : public OvXMLElement {
public:
    using OvXMLNode::ParseIdentifier;
    using OvXMLNode::ParseMatch;
};

TEST(OvXMLParse, Tokens)
{
    const TextCase kCases[] = {
        // whether "<!" stands there, and what is left
        { "behind white space", " \t\r\n<!b", "1 b" },
        { "a part at the end", "<", "1 " },
        { "something else", " </", "0  </" },
        { "the end", "  ", "0   " },
    };
    expect_each(kCases, [](const string& text) {
        const char* cursor = text.c_str();
        const int matched = Opened::ParseMatch(cursor, "<!");
        return std::to_string(matched) + " " + cursor;
    });
    const char* cursor = " \na-1.b";
    CString name("before");
    EXPECT_TRUE(Opened::ParseIdentifier(cursor, name));
    EXPECT_EQ(name, "a-1");
    EXPECT_FALSE(Opened::ParseIdentifier(cursor, name));
    EXPECT_STREQ(cursor, ".b");
}

TEST(OvXMLParse, RunsOfText)
{
    const TextCase kCases[] = {
        // up to the "|", and what is left; "xyz" stands behind each
        { "no length", "|", "|xyz" },
        { "a reference cut off by the run's end", "&lt|", "&lt|xyz" },
        { "stops behind a sign without a number", "a&#x1;|", "a|x1;xyz" },
        { "white space up to the run's end", "a  |", "a |xyz" },
    };
    expect_each(kCases, [](const string& text) {
        const string whole = text.substr(0, text.size() - 1) + "xyz";
        const char* cursor = whole.c_str();
        const CString value = OvXMLNode::StringToValue(cursor, static_cast<int>(text.size()) - 1);
        return test::bytes_of(value) + "|" + cursor;
    });
    const char* cursor = "x &lt;";
    EXPECT_EQ(OvXMLNode::StringToValue(cursor, 99), "x <") << "longer than the text";
    EXPECT_STREQ(cursor, "");
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
    const TextCase kCases[] = {
        // whether it could be read, its name and value
        { "white space and references", " b = 'x &gt;  y'/>", "1 b:x > y" },
        { "empty", "b=\"\"", "1 b:" },
        { "no quotes", "b=x", "0 b:" },
        { "no name", "='x'", "0 old:" },
        { "unclosed", "b='x", "0 b:" },
        { "a faulty reference", "b='x&#y'", "0 b:x" },
    };
    expect_each(kCases, [](const string& text) {
        OvXMLAttribute attribute(nullptr, "old");
        const char* cursor = text.c_str();
        const string read = std::to_string(attribute.ParseString(cursor));
        return read + " " + (attribute.GetName() + ":" + attribute.GetValue()).operator LPCSTR();
    });
}

// The parser against a second, slow reader of the same documents, written from the rules alone and sharing nothing with
// the library: it recurses and copies its text. It gives the tree in the form of Trees.h.
constexpr auto npos = string::npos;

struct Refused {};

void require(bool condition)
{
    if (!condition)
        throw Refused();
}

string lowered(string text)
{
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

bool is_one_of(const string& set, char c)
{
    return set.find(c) != npos;
}

class Model {
public:
    explicit Model(string text) : text_(std::move(text)) {}

    string document(bool strict)
    {
        if (match("<?xml version=\""))
            skip_past("?>");
        else
            require(!strict);
        skip_comments();
        if (match("<!DOCTYPE"))
            skip_past(">");
        skip_comments();
        return element();
    }

private:
    bool at_end() const { return at_ >= text_.size(); }
    void skip_space() { at_ = std::min(text_.find_first_not_of(" \t\r\n", at_), text_.size()); }

    // The text's end matches whatever would follow.
    bool match(const string& token)
    {
        const size_t before = at_;
        skip_space();
        const string here = text_.substr(at_, token.size());
        const bool matched = !here.empty() && token.starts_with(here);
        at_ = matched ? at_ + here.size() : before;
        return matched;
    }
    void skip_past(const string& mark)
    {
        const size_t place = text_.find(mark, at_);
        require(place != npos);
        at_ = place + mark.size();
    }
    void skip_comments()
    {
        while (match("<!--"))
            skip_past("-->");
    }
    string identifier()
    {
        skip_space();
        string name;
        while (!at_end() && (std::isalnum(static_cast<unsigned char>(text_[at_])) || is_one_of(":_-", text_[at_])))
            name += text_[at_++];
        require(!name.empty());
        return name;
    }

    // Decodes from at_ up to `end`; at_ stays where decoding stopped.
    string decoded(size_t end)
    {
        const string space = " \t\n\v\f\r";
        string out;
        while (at_ < end) {
            const char c = text_[at_];
            if (is_one_of(space, c)) {
                out += out.empty() ? "" : " ";
                while (at_ < end && is_one_of(space, text_[at_]))
                    at_++;
                continue;
            }
            at_++;
            if (c != '&')
                out += c;
            else if (at_ < end && !reference(end, out))
                break;
        }
        return out;
    }
    bool reference(size_t end, string& out)
    {
        const std::pair<string, char> names[] = { { "amp;", '&' },  { "lt;", '<' },    { "gt;", '>' },
                                                  { "quot;", '"' }, { "apos;", '\'' }, { "nbsp;", ' ' } };
        const string run = text_.substr(at_, end - at_);
        for (const auto& [name, c] : names) {
            if (lowered(run.substr(0, name.size())) == name) {
                out += c;
                at_ += name.size();
                return true;
            }
        }
        if (run[0] != '#') {
            out += '&';
            return true;
        }
        at_++;
        const string number = run.substr(1, run.find_first_not_of("0123456789", 1) - 1);
        if (number.empty())
            return false;
        int low = 0;
        for (const char digit : number)
            low = (low * 10 + digit - '0') % 256;
        out += static_cast<char>(low);
        at_ = run.find(';') == npos ? end : at_ + run.find(';');
        return true;
    }

    void attribute(test::HashOrder& attributes)
    {
        const string name = identifier();
        require(match("="));
        const string quote = match("\"") ? "\"" : "'";
        require(quote == "\"" || match("'"));
        const size_t end = text_.find(quote, at_);
        require(end != npos);
        attributes.set(lowered(name), name + "=" + decoded(end));
        require(match(quote));
    }
    string element()
    {
        require(match("<"));
        const string name = identifier();
        test::HashOrder attributes;
        bool closed = false;
        while (!closed && !match(">")) {
            closed = match("/");
            if (closed)
                require(match(">"));
            else
                attribute(attributes);
        }
        const string walked = attributes.walked();
        const string line = name + (walked.empty() ? "" : "{" + walked + "}");
        return closed ? line : line + content(name);
    }
    string content(const string& name)
    {
        string text;
        string children;
        for (;;) {
            size_t bracket = text_.find('<', at_);
            require(bracket != npos);
            if (match("<![CDATA[")) {
                const size_t end = text_.find("]]>", at_);
                require(end != npos);
                append(text, decoded(end));
                at_ = bracket = end + 3;
            }
            if (bracket > at_) {
                append(text, decoded(bracket));
                require(at_ == bracket);
            }
            if (match("</" + name + ">"))
                break;
            if (match("<!--"))
                skip_past("-->");
            else
                children += (children.empty() ? "[" : ",") + element();
        }
        return (text.empty() ? "" : "(" + text + ")") + (children.empty() ? "" : children + "]");
    }
    static void append(string& text, const string& run)
    {
        text += (text.empty() || text.back() == ' ' ? "" : " ") + run;
    }

    const string text_;
    size_t at_ = 0;
};

// Both readers' trees; "null" where the document is refused. The parser's text ends where its allocation does, so that
// the address sanitizer sees a read beyond it.
string read(const string& text, bool strict)
{
    return test::described(test::parsed(text, strict));
}
string expected(const string& text, bool strict)
{
    try {
        return Model(text.substr(0, text.find('\0'))).document(strict);
    } catch (const Refused&) {
        return "null";
    }
}

// Pieces that documents are made of, the bytes of markup among them far more often than in any real one; tags come
// more often than the rest.
constexpr char kTags[] = "<a>|</a>|<b>|</b>|<a|<b/>|</|<";
constexpr char kPieces[] = "<a>|</a>|<b>|</b>|<a|<b/>|</|<|>|/|/>|a|b|R| b='| r=\"|'|\"| A = '|=| |\n|\v|&|&lt;|&#|&#65"
                           "|;|&#x41|&amp;|&NBSP;|&nope;|<![CDATA[|]]>|<!--|-->|!|x|y |\xd6|&#0;|<!DOCTYPE"
                           "|<?xml version=\"|?>| s='1'| c='2'|--|#|&quot;|&apos;";

std::vector<string> split(const string& text)
{
    std::vector<string> pieces;
    std::istringstream stream(text);
    for (string piece; std::getline(stream, piece, '|');)
        pieces.push_back(piece);
    return pieces;
}

string random_document(std::mt19937& random)
{
    static const std::vector<string> pieces = split(kPieces);
    static const std::vector<string> tags = split(kTags);
    const auto below = [&random](size_t limit) { return static_cast<size_t>(random() % limit); };
    string text = below(3) ? "<a>" : "";
    for (size_t left = below(24); left > 0; left--)
        text += below(3) ? pieces[below(pieces.size())] : tags[below(tags.size())];
    return text + (below(4) ? "</a>" : "");
}

TEST(OvXMLModel, AgreesOnRandomDocuments)
{
    std::mt19937 random(20260401);
    int trees = 0;
    for (int i = 0; i < 100000; i++) {
        const string text = random_document(random);
        const bool strict = i % 16 == 0;
        const string tree = expected(text, strict);
        trees += tree != "null";
        ASSERT_EQ(read(text, strict), tree) << text;
    }
    EXPECT_GT(trees, 10000) << "too few of the documents are any";
}

// Documents that are mostly good: cut off at every byte, and with each byte exchanged.
TEST(OvXMLModel, AgreesOnSpoiltDocuments)
{
    const string good = "<?xml version=\"1.0\"?><!-- c --><!DOCTYPE a><!----><a b='x &amp; y' r=\"&#65;\" s='1'>t<b "
                        "a='2'/> u <!-- d --><![CDATA[ v ]]><b r='e'> w </b> &lt; </a>";
    const string bytes = "<>/&;'\"= !-[]#a1\n\xd6.:_Z9\t\r\v\f";
    EXPECT_EQ(read(good, true), "a{r=A,s=1,b=x & y}(t u v < )[b{a=2},b{r=e}(w )]");
    for (size_t i = 0; i < good.size(); i++) {
        ASSERT_EQ(read(good.substr(0, i), true), expected(good.substr(0, i), true)) << i;
        for (const char byte : bytes) {
            string text = good;
            text[i] = byte;
            ASSERT_EQ(read(text, false), expected(text, false)) << text;
        }
    }
}

} // namespace
