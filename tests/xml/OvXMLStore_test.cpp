// A tree as text, as words and in an archive, and back.
#include "tests/support/TextCases.h"
#include "tests/xml/Trees.h"

#include <algorithm>
#include <memory>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace {

using std::string;
using test::bytes_of;
using test::described;
using test::expect_each;
using test::parsed;
using test::TextCase;
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
        { "a declaration", "<a/>", 1, 0, "<?xml version=\"1.0\"?><a/>" },
        { "a declaration and lines", "<a/>", 1, 1, "<?xml version=\"1.0\"?>\r\n<a/>\r\n" },
        { "lines without a declaration begin with one", "<a>x</a>", 0, 1, "\r\n<a>x</a>\r\n" },
        { "text behind the children", "<a>x<b/></a>", 0, 0, "<a><b/>x</a>" },
        { "children in children", "<a>x<b><c/></b><d/></a>", 0, 1,
          "\r\n<a>\r\n<b>\r\n<c/>\r\n</b>\r\n<d/>\r\nx</a>\r\n" },
        { "attributes in their order", "<a c='1' b='2'>x</a>", 0, 0, "<a b=\"2\" c=\"1\">x</a>" },
        { "escaped in both places", "<a b='&quot;&lt;\xd6'>&amp;&gt;&apos;\xd0</a>", 0, 0,
          "<a b=\"&quot;&lt;&#214;\">&amp;&gt;&apos;&#208;</a>" },
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

TEST(OvXMLWords, AreCollected)
{
    const TextCase kCases[] = {
        { "attributes, children, then the text", "<a b='1' c='2'>x<d e='3'>y</d>z</a>", "1 2 3 y x z" },
        { "prefixed names and check sums are left out", "<a xmlns:x='1' x:y='1' sha1='2' title='3' Sha1x='4'/>",
          "3 4" },
        { "an empty value between others", "<a a='1' b='' c='3'/>", "1  3" },
        { "empty values at the ends are trimmed", "<a a='' b='2' c=''/>", "2" },
        { "no text, no space", "<a><b/><c>x</c><d/></a>", "x" },
    };
    expect_each(kCases, [](const string& text) { return bytes_of(parsed(text)->GetRecursiveWords()); });
    CString words(" first");
    parsed("<a b='1'>x </a>")->AddRecursiveWords(words);
    EXPECT_EQ(words, " first 1 x ");
}

TEST(OvXMLWords, AreNormalised)
{
    const TextCase kCases[] = {
        { "runs of blanks", " a\t\tb!? ", "a b" },
        { "blanks alone", " \t ", "" },
        { "what stood behind the last space goes", "a !?", "a " },
        { "what stood before the first one", "! a", "a" },
        { "and between two", "a ! b", "a b" },
        { "control characters", "a\001\037b\177", "a b" },
        { "marks, letters and digits", "\"'-&/,;#()*.:<>=[]{}|_~`@$%^+\\?!AZaz09", "\"'-&/,;#()AZaz09" },
        { "beyond ASCII", "\x80\xa0\xbf\xc0\xd6\xff", "\xc0\xd6\xff" },
    };
    expect_each(kCases, [](const string& text) {
        CString normal(text.c_str());
        OvXMLNode::UniformString(normal);
        return bytes_of(normal);
    });
}

string stored(auto& node)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    node.Serialize(archive);
    archive.Close();
    string bytes(static_cast<size_t>(file.GetLength()), '\0');
    file.SeekToBegin();
    file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
    return bytes;
}

// False if the archive threw, as it does at an end that comes too soon.
bool load(auto& node, const string& bytes)
{
    CMemFile file;
    file.Write(bytes.data(), static_cast<UINT>(bytes.size()));
    file.SeekToBegin();
    CArchive archive(&file, CArchive::load);
    try {
        node.Serialize(archive);
        return true;
    } catch (CArchiveException* exception) {
        exception->Delete();
        return false;
    }
}

string operator""_bytes(const char* bytes, size_t length)
{
    return { bytes, length };
}

TEST(OvXMLArchive, HasItsForm)
{
    const Tree tree = parsed("<n x='1' y='22'>xyz<p/><q/></n>");
    EXPECT_EQ(stored(*tree), "\1n\3xyz\2\0\1x\0011\1y\00222\2\0\1p\0\0\0\0\0\1q\0\0\0\0\0"_bytes);
    OvXMLAttribute attribute(nullptr, "b");
    attribute.SetValue("1");
    EXPECT_EQ(stored(attribute), "\1b\0011"_bytes);
    OvXMLElement holder(nullptr, "h");
    OvXMLAttribute* other = holder.AddAttribute("other", "");
    EXPECT_TRUE(load(*other, "\1b\0011"));
    EXPECT_EQ(described(&holder), "h{b=1}");
    EXPECT_EQ(holder.GetAttribute("other"), other) << "it keeps its key";
}

TEST(OvXMLArchive, Loads)
{
    const TextCase kCases[] = {
        { "wide text", "\xFF\xFE\xFF\2\x2D\x4En\0\1x\0\0\0\0"_bytes, "\xd6\xd0n(x)" },
        { "zero bytes", "\2n\0\3x\0y\1\0\1m\2\0z\0\0"_bytes, "n\0{m=\0z}(x\0y)"_bytes },
        { "repeated keys, of which one is left", "\1n\0\3\0\1b\0011\1c\0012\1B\0013\0\0"_bytes, "n{B=3,c=2}" },
        { "a name of 2^32 - 1 bytes", "\xFF\xFF\xFF\xFF\xFF\xFF\xFFx"_bytes, "throws" },
        { "a value of 2^31 - 1 bytes", "\1n\xFF\xFF\xFF\xFF\xFF\xFF\x7Fx"_bytes, "throws" },
        { "2^32 - 1 attributes", "\1n\0\xFF\xFF\xFF\xFF\xFF\xFF\1m\0"_bytes, "throws" },
        { "2^32 - 1 children", "\1n\0\0\0\xFF\xFF\xFF\xFF\xFF\xFF\1m\0\0\0\0\0"_bytes, "throws" },
        { "a wide name of 2^32 - 1 units", "\xFF\xFE\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFFx"_bytes, "throws" },
    };
    expect_each(kCases, [](const string& bytes) {
        OvXMLElement element;
        return load(element, bytes) ? described(&element) : "throws";
    });
}

TEST(OvXMLArchive, AddsToWhatIsThere)
{
    OvXMLElement element(nullptr, "before");
    element.SetValue("text");
    const Tree source = parsed("<a b='1' s='2'>x<c d='3'/></a>");
    const std::unique_ptr<OvXMLAttribute> earlier(element.AddAttribute("B", "0"));
    element.AddAttribute("k", "9");
    element.AddElement("first");
    ASSERT_TRUE(load(element, stored(*source)));
    EXPECT_EQ(described(&element), "a{k=9,s=2,b=1}(x)[first,c{d=3}]") << "s goes to the front, b takes B's place";
    EXPECT_EQ(element.GetAttribute("s")->GetParent(), &element);
    EXPECT_EQ(earlier->GetParent(), &element) << "the earlier one is the caller's now";
    EXPECT_EQ(earlier->GetValue(), "0");
}

// The forms of lengths and counts are the framework's; from here on they have 32 bits.
TEST(OvXMLArchive, LengthsAndCountsBeyondTheirLimits)
{
    constexpr int kSize = 65535;
    const string text(kSize, 'x');
    OvXMLElement element(nullptr, "a");
    element.SetValue(text.c_str());
    OvXMLElement* child = element.AddElement("c");
    child->AddAttribute("b", text.c_str());
    for (int i = 1; i < kSize; i++) {
        child->AddAttribute(std::to_string(i).c_str(), i);
        element.AddElement("b");
    }
    const string bytes = stored(element);
    EXPECT_EQ(bytes.substr(0, 9), "\1a\xFF\xFF\xFF\xFF\xFF\0\0"_bytes);
    OvXMLElement back;
    ASSERT_TRUE(load(back, bytes));
    EXPECT_TRUE(back.Equals(&element));
    EXPECT_EQ(stored(back).size(), bytes.size());
}

TEST(OvXMLArchive, CutAtEveryByte)
{
    const Tree tree = parsed("<a b='1' c='2'>xyz<d e='3'><f/></d><g>h</g></a>");
    const string bytes = stored(*tree);
    const auto left_by = [&bytes](size_t length) {
        OvXMLElement element(nullptr, "before");
        element.SetValue("text");
        EXPECT_FALSE(load(element, bytes.substr(0, length))) << length;
        return described(&element);
    };
    for (size_t length = 0; length < bytes.size(); length++)
        EXPECT_EQ(left_by(length).find('g'), string::npos) << length;
    EXPECT_EQ(left_by(3), "a(text)") << "the name was whole, the value was not";
    EXPECT_EQ(left_by(bytes.size() - 1), "a{b=1,c=2}(xyz)[d{e=3}[f]]") << "what was whole stays";
}

// Random trees through the archive twice and through text: the second copy has the first's bytes, since an attribute
// that changed places in its bucket has changed back.
TEST(OvXMLArchive, RandomTreesComeBack)
{
    std::mt19937 random(11);
    for (int i = 0; i < 300; i++) {
        Tree root(new OvXMLElement(nullptr, "root"));
        OvXMLElement* place = root.get();
        for (unsigned steps = random() % 60; steps > 0; steps--) {
            const string name(1, static_cast<char>('a' + random() % 20));
            string value(random() % 4, '\0');
            for (char& byte : value)
                byte = static_cast<char>(0x0E + random() % 0xF2); // white space would be folded
            std::ranges::replace(value, ' ', '<');
            if (random() % 2)
                place->AddAttribute(name.c_str(), value.c_str());
            else if (random() % 3)
                (place = place->AddElement(name.c_str()))->SetValue(value.c_str());
            else
                place = place->GetParent() ? place->GetParent() : place;
        }
        OvXMLElement once;
        OvXMLElement twice;
        const string bytes = stored(*root);
        ASSERT_TRUE(load(once, bytes));
        EXPECT_TRUE(once.Equals(root.get()));
        ASSERT_TRUE(load(twice, stored(once)));
        EXPECT_EQ(stored(twice), bytes);

        // Through text the order is turned round in the same way; so is it in a clone.
        const Tree read = parsed(bytes_of(root->ToString(1, 0)), TRUE);
        ASSERT_TRUE(read);
        EXPECT_TRUE(read->Equals(root.get()));
        const Tree clone(root->Clone(nullptr));
        EXPECT_EQ(stored(*clone), stored(once));
        EXPECT_EQ(bytes_of(read->ToString(0, 0)), bytes_of(clone->ToString(0, 0)));
    }
}

} // namespace
