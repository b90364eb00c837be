#include "tests/xml/Trees.h"

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <windows.h>

namespace {

using std::string;
using test::described;
using test::parsed;
using test::Tree;

TEST(OvXMLAttributes, AreFoundIgnoringCase)
{
    OvXMLElement element(nullptr, "e");
    OvXMLAttribute* b = element.AddAttribute("B", "1");
    EXPECT_EQ(element.GetAttribute("b"), b);
    EXPECT_EQ(element.AddAttribute("b", "2"), b) << "reused";
    EXPECT_EQ(element.AddAttribute("b", static_cast<const char*>(nullptr)), b);
    EXPECT_EQ(described(&element), "e{B=2}") << "with the name and value it had";
    EXPECT_EQ(element.AddAttribute("c", static_cast<const char*>(nullptr))->GetValue(), "");
    EXPECT_EQ(element.GetAttribute("c")->GetParent(), &element);
    EXPECT_EQ(element.GetAttribute("d"), nullptr);
    EXPECT_EQ(element.GetAttribute(nullptr), nullptr);
    // Only the letters of ASCII: full-width A and a are two names here.
    element.AddAttribute("\xa3\xc1", "3");
    EXPECT_EQ(element.GetAttribute("\xa3\xe1"), nullptr);
    EXPECT_NE(element.GetAttribute("\xa3\xc1"), nullptr);
    // A clone has the system's lower case for a key.
    const Tree clone(element.Clone(nullptr));
    EXPECT_EQ(clone->GetAttribute("\xa3\xc1"), nullptr);
    EXPECT_NE(clone->GetAttribute("\xa3\xe1"), nullptr);
    EXPECT_EQ(clone->GetAttribute("\xa3\xe1")->GetName(), "\xa3\xc1");
}

TEST(OvXMLAttributes, AreFormatted)
{
    OvXMLElement element(nullptr, "e");
    EXPECT_EQ(element.AddAttribute("a", -12)->GetValue(), "-12");
    EXPECT_EQ(element.AddAttribute("b", 0xFF030201UL)->GetValue(), "1,2,3");
    EXPECT_EQ(element.AddAttribute("c", COLORREF{ 0x0000FF })->GetValue(), "255,0,0");
}

TEST(OvXMLAttributes, AreReadAsNumbers)
{
    const struct {
        const char* text;     // null: no such attribute
        int number;           // 77 is the default
        unsigned long colour; // 0x112233 is the default: red 0x33, green 0x22, and 0x33 for blue
    } kCases[] = {
        { nullptr, 77, 0x112233 },
        { "", 77, 0x112233 },
        { "12px", 12, 0x33220C },
        { "px", 0, 0x332233 },
        { " -3", -3, 0x3322FD },
        { "+4", 4, 0x332204 },
        { "99999999999", 2147483647, 0x3322FF },
        { "-99999999999", -2147483647 - 1, 0x332201 },
        { "1,2,3", 1, 0x030201 },
        { "300,0,0", 300, 0x00002C },
        { "-1, 256, 5x", -1, 0x0500FF },
        { "1 ,2,3", 1, 0x332201 },
        { "1,,3", 1, 0x332201 },
        { "1,2", 1, 0x330201 },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.text ? c.text : "none");
        OvXMLElement element;
        if (c.text)
            element.AddAttribute("A", c.text);
        EXPECT_EQ(element.GetAttributeValueInt("a", 77), c.number);
        EXPECT_EQ(element.GetAttributeValueColor("a", 0x112233), c.colour);
        EXPECT_EQ(element.GetAttributeValue("a", "default"), c.text ? c.text : "default");
        EXPECT_EQ(element.GetAttributeValue("a", nullptr), c.text ? c.text : "");
    }
    EXPECT_EQ(OvXMLElement().GetAttributeValueColor("a", 0xFF112233), 0xFF112233) << "a default comes back whole";
}

TEST(OvXMLAttributes, AreStoredAsWritten)
{
    OvXMLElement element(nullptr, "e");
    auto* width = new OvXMLAttribute(nullptr, "Width");
    EXPECT_EQ(element.AddAttribute(width), width);
    EXPECT_EQ(width->GetParent(), &element);
    EXPECT_EQ(element.GetAttribute("Width"), nullptr);
    EXPECT_EQ(element.GetAttributeValue("width", "none"), "none");
    EXPECT_EQ(described(&element), "e{Width=}");
    EXPECT_EQ(element.AddAttribute(width), nullptr) << "it has a parent";
    EXPECT_EQ(element.AddAttribute(static_cast<OvXMLAttribute*>(nullptr)), nullptr);

    const std::unique_ptr<OvXMLAttribute> lowered(element.AddAttribute("WIDTH", "1")); // stands under "width"
    EXPECT_EQ(element.GetAttributeCount(), 2);
    element.RemoveAttribute(width); // takes out what stands under "width"
    EXPECT_EQ(described(&element), "e{Width=}");

    auto* second = new OvXMLAttribute(nullptr, "Width");
    second->SetValue("2");
    element.AddAttribute(second);
    EXPECT_EQ(described(&element), "e{Width=2}") << "the earlier one left, alive";
    EXPECT_EQ(width->GetParent(), &element);
    delete width;
    second->Delete();
    EXPECT_EQ(described(&element), "e");
}

TEST(OvXMLAttributes, AreTakenOutAndDeleted)
{
    const Tree element = parsed("<e a='1' b='2' c='3' d='4'/>");
    OvXMLAttribute* b = element->GetAttribute("b");
    element->RemoveAttribute(b);
    element->RemoveAttribute(b); // no longer there
    element->RemoveAttribute(nullptr);
    EXPECT_EQ(described(element), "e{a=1,c=3,d=4}");
    EXPECT_EQ(b->GetParent(), element.get());
    delete b;
    element->GetAttribute("a")->Delete();
    EXPECT_EQ(element->GetAttributeCount(), 2);
    element->DeleteAttribute("D");
    element->DeleteAttribute("none");
    EXPECT_EQ(described(element), "e{c=3}");
    element->DeleteAllAttributes();
    EXPECT_EQ(described(element), "e");
    EXPECT_EQ(element->GetAttributeIterator(), nullptr);
    POSITION position = nullptr;
    EXPECT_EQ(element->GetNextAttribute(position), nullptr);
}

TEST(OvXMLAttributes, KeepTheirKeyWhenRenamed)
{
    const Tree element = parsed("<e a='1' b='2'/>");
    OvXMLAttribute* a = element->GetAttribute("a");
    a->SetName("b");
    EXPECT_EQ(described(element), "e{b=1,b=2}");
    EXPECT_EQ(element->GetAttribute("a"), a);
    EXPECT_NE(element->GetAttribute("b"), a);
    EXPECT_EQ(element->AddAttribute("A", "3"), a);
    a->Delete(); // itself, not the other of its name
    EXPECT_EQ(described(element), "e{b=2}");
}

// Many attributes, in the element's index, against a plain table of the same rules; then all the ways out of it.
TEST(OvXMLAttributes, KeepTheirOrderHoweverMany)
{
    std::mt19937 random(7);
    OvXMLElement element(nullptr, "e");
    std::vector<std::vector<string>> buckets(17); // newest last
    const auto bucket_of = [](const string& key) {
        unsigned hash = 0;
        for (const char c : key)
            hash = hash * 33 + static_cast<unsigned>(static_cast<signed char>(c));
        return hash % 17;
    };
    const auto expected = [&buckets] {
        string line;
        for (const auto& bucket : buckets) {
            for (auto key = bucket.rbegin(); key != bucket.rend(); ++key)
                line.append(line.empty() ? "e{" : ",").append(*key).append("=1");
        }
        return line.empty() ? "e" : line + "}";
    };
    for (int i = 0; i < 300; i++) {
        const string key = string("k").append(std::to_string(random() % 200)).append("\xe9");
        auto& bucket = buckets[bucket_of(key)];
        if (std::ranges::find(bucket, key) == bucket.end())
            bucket.push_back(key);
        element.AddAttribute(key.c_str(), 1);
        ASSERT_EQ(described(&element), expected()) << i;
    }
    // The rest of the way down to none.
    for (int i = 0; element.GetAttributeCount() > 0; i++) {
        auto& bucket = buckets[random() % 17];
        if (bucket.empty())
            continue;
        const auto key = bucket.begin() + static_cast<long>(random() % bucket.size());
        element.DeleteAttribute(key->c_str());
        bucket.erase(key);
        ASSERT_EQ(described(&element), expected()) << i;
    }
}

} // namespace
