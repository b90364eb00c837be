#include "tests/xml/Trees.h"

#include <random>
#include <string>

#include <gtest/gtest.h>

namespace {

using std::string;
using test::bytes_of;
using test::described;
using test::parsed;
using test::Tree;

string stored(OvXMLElement& element)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    element.Serialize(archive);
    archive.Close();
    string bytes(static_cast<size_t>(file.GetLength()), '\0');
    file.SeekToBegin();
    file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
    return bytes;
}

// Loads into the element; false if the archive threw, as it does at an end that comes too soon.
bool load(OvXMLElement& element, const string& bytes)
{
    CMemFile file;
    file.Write(bytes.data(), static_cast<UINT>(bytes.size()));
    file.SeekToBegin();
    CArchive archive(&file, CArchive::load);
    try {
        element.Serialize(archive);
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
    const Tree tree = parsed("<a b='1' s='22'>xyz<c/><d/></a>");
    EXPECT_EQ(stored(*tree), "\x01"
                             "a\x03xyz"
                             "\x02\x00"
                             "\x01s\x02"
                             "22"
                             "\x01"
                             "b\x01"
                             "1"
                             "\x02\x00"
                             "\x01"
                             "c\x00\x00\x00\x00\x00"
                             "\x01"
                             "d\x00\x00\x00\x00\x00"_bytes);
    OvXMLAttribute attribute(nullptr, "b");
    attribute.SetValue("1");
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    attribute.Serialize(archive);
    archive.Close();
    EXPECT_EQ(file.GetLength(), 4U);
    file.SeekToBegin();
    CArchive back(&file, CArchive::load);
    OvXMLAttribute other(nullptr, "other");
    other.Serialize(back);
    EXPECT_EQ(other.GetName() + other.GetValue(), "b1");
}

TEST(OvXMLArchive, AddsToWhatIsThere)
{
    OvXMLElement element(nullptr, "before");
    element.SetValue("text");
    OvXMLAttribute* earlier = element.AddAttribute("B", "0");
    element.AddAttribute("k", "9");
    element.AddElement("first");
    const Tree source = parsed("<a b='1' s='2'>x<c d='3'/></a>");
    ASSERT_TRUE(load(element, stored(*source)));
    EXPECT_EQ(described(&element), "a{k=9,s=2,b=1}(x)[first,c{d=3}]") << "s goes to the front, b takes B's place";
    EXPECT_EQ(element.GetAttribute("s")->GetParent(), &element);
    EXPECT_EQ(earlier->GetParent(), &element) << "the earlier one is the caller's now";
    EXPECT_EQ(earlier->GetValue(), "0");
    delete earlier;
}

TEST(OvXMLArchive, LengthsAtTheirLimits)
{
    const struct {
        size_t length;
        string prefix;
    } kCases[] = {
        { 0, "\x00"_bytes },
        { 254, "\xFE"_bytes },
        { 255, "\xFF\xFF\x00"_bytes },
        { 65533, "\xFF\xFD\xFF"_bytes },
        { 65534, "\xFF\xFF\xFF\xFE\xFF\x00\x00"_bytes },
        { 65535, "\xFF\xFF\xFF\xFF\xFF\x00\x00"_bytes },
        { 1000000, "\xFF\xFF\xFF\x40\x42\x0F\x00"_bytes },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.length);
        OvXMLElement element(nullptr, "a");
        element.SetValue(string(c.length, 'x').c_str());
        element.AddAttribute("b", string(c.length, 'y').c_str());
        const string bytes = stored(element);
        EXPECT_EQ(bytes.substr(2, c.prefix.size()), c.prefix);
        EXPECT_EQ(bytes.size(), 8 + 2 * (c.prefix.size() + c.length));
        OvXMLElement back;
        ASSERT_TRUE(load(back, bytes));
        EXPECT_TRUE(back.Equals(&element));
    }
}

TEST(OvXMLArchive, CountsAtTheirLimits)
{
    const struct {
        int count;
        string bytes;
    } kCases[] = { { 65534, "\xFE\xFF"_bytes }, { 65535, "\xFF\xFF\xFF\xFF\x00\x00"_bytes } };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.count);
        OvXMLElement element(nullptr, "a");
        OvXMLElement child(nullptr, "c");
        for (int i = 0; i < c.count; i++) {
            element.AddElement("b");
            child.AddAttribute(string("n").append(std::to_string(i)).c_str(), i);
        }
        const string elements = stored(element);
        EXPECT_EQ(elements.substr(5, c.bytes.size()), c.bytes);
        const string attributes = stored(child);
        EXPECT_EQ(attributes.substr(3, c.bytes.size()), c.bytes);
        OvXMLElement back;
        ASSERT_TRUE(load(back, elements));
        EXPECT_TRUE(back.Equals(&element));
        OvXMLElement back_child;
        ASSERT_TRUE(load(back_child, attributes));
        EXPECT_TRUE(back_child.Equals(&child));
        EXPECT_EQ(stored(back_child).size(), attributes.size());
    }
}

TEST(OvXMLArchive, CutAtEveryByte)
{
    const Tree tree = parsed("<a b='1' c='2'>xyz<d e='3'><f/></d><g>h</g></a>");
    const string bytes = stored(*tree);
    for (size_t length = 0; length < bytes.size(); length++) {
        SCOPED_TRACE(length);
        OvXMLElement element(nullptr, "before");
        EXPECT_FALSE(load(element, bytes.substr(0, length)));
        EXPECT_LE(element.GetElementCount(), 1);
    }
    OvXMLElement most;
    EXPECT_FALSE(load(most, bytes.substr(0, bytes.size() - 1)));
    EXPECT_EQ(described(&most), "a{b=1,c=2}(xyz)[d{e=3}[f]]") << "what was whole stays";
    OvXMLElement least(nullptr, "before");
    least.SetValue("text");
    EXPECT_FALSE(load(least, bytes.substr(0, 3)));
    EXPECT_EQ(described(&least), "a(text)") << "the name was whole, the value was not";
}

TEST(OvXMLArchive, LyingLengthsEndWithTheBytes)
{
    const struct {
        const char* why;
        string bytes;
    } kCases[] = {
        { "a name of 2^32 - 1 bytes", "\xFF\xFF\xFF\xFF\xFF\xFF\xFFx"_bytes },
        { "a value of 2^31 - 1 bytes", "\x01"
                                       "a\xFF\xFF\xFF\xFF\xFF\xFF\x7Fx"_bytes },
        { "2^32 - 1 attributes", "\x01"
                                 "a\x00\xFF\xFF\xFF\xFF\xFF\xFF\x01"
                                 "b\x00"_bytes },
        { "2^32 - 1 children", "\x01"
                               "a\x00\x00\x00\xFF\xFF\xFF\xFF\xFF\xFF\x01"
                               "b\x00\x00\x00\x00\x00"_bytes },
        { "a wide name of 2^32 - 1 units", "\xFF\xFE\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFFx"_bytes },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        OvXMLElement element;
        EXPECT_FALSE(load(element, c.bytes));
    }
}

TEST(OvXMLArchive, LoadsWideText)
{
    OvXMLElement element;
    ASSERT_TRUE(load(element, "\xFF\xFE\xFF\x02\x2D\x4E"
                              "a\x00\x01x\x00\x00\x00\x00"_bytes));
    EXPECT_EQ(described(&element), "\xd6\xd0"
                                   "a(x)");
}

TEST(OvXMLArchive, KeepsZeroBytes)
{
    const string bytes = "\x02"
                         "a\0\x03x\0y\x01\x00\x01"
                         "b\x02\0z\x00\x00"_bytes;
    OvXMLElement element;
    ASSERT_TRUE(load(element, bytes));
    EXPECT_EQ(described(&element), "a\0{b=\0z}(x\0y)"_bytes);
    EXPECT_EQ(stored(element), bytes);
}

TEST(OvXMLArchive, RepeatedKeysLeaveOneAttribute)
{
    OvXMLElement element;
    ASSERT_TRUE(load(element, "\x01"
                              "a\x00\x03\x00\x01"
                              "b\x01"
                              "1\x01"
                              "c\x01"
                              "2\x01"
                              "B\x01"
                              "3\x00\x00"_bytes));
    EXPECT_EQ(described(&element), "a{B=3,c=2}");
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
                byte = static_cast<char>(0x21 + random() % 0xDF);
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
