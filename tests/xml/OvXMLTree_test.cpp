#include "tests/support/HashOrder.h"
#include "tests/support/TextCases.h"
#include "tests/xml/Trees.h"

#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <windows.h>

namespace {

using std::string;
using test::described;
using test::parsed;
using test::Tree;

TEST(OvXMLNode, TellsItsType)
{
    OvXMLElement parent;
    OvXMLNode node(&parent, "n");
    OvXMLElement element(&parent, "n");
    OvXMLAttribute attribute(&parent, "n");
    EXPECT_EQ(node.GetType(), 0);
    EXPECT_EQ(node.AsElement(), nullptr);
    EXPECT_EQ(node.AsAttribute(), nullptr);
    EXPECT_EQ(element.AsElement(), &element);
    EXPECT_EQ(attribute.AsAttribute(), &attribute);
    EXPECT_EQ(node.GetParent(), &parent);
    EXPECT_EQ(described(&parent), "") << "constructing puts nothing into the parent";
    node.SetValue("v");
    EXPECT_EQ(node.GetName() + node.GetValue(), "nv");
    node.SetName(nullptr);
    EXPECT_EQ(node.GetName() + node.GetValue(), "v");
}

TEST(OvXMLNode, CopiesFieldsAndNoPlace)
{
    OvXMLElement parent(nullptr, "p");
    OvXMLAttribute* attribute = parent.AddAttribute("b", "1");
    OvXMLAttribute copy(*attribute);
    EXPECT_EQ(copy.GetType(), 2);
    EXPECT_EQ(copy.GetParent(), &parent);
    EXPECT_EQ(copy.GetName() + copy.GetValue(), "b1");
    EXPECT_EQ(parent.GetAttributeCount(), 1);

    const OvXMLNode sliced(parent);
    EXPECT_EQ(sliced.GetType(), 1);
    EXPECT_EQ(sliced.AsElement(), nullptr) << "it says what it was copied from, but it is none";

    // An assignment changes what the attribute is called and by whom it was made, not where it is.
    OvXMLElement other(nullptr, "o");
    OvXMLAttribute* target = other.AddAttribute("x", "2");
    *target = *attribute;
    *target = *target;
    EXPECT_EQ(target->GetParent(), &parent);
    EXPECT_EQ(described(&other), "o{b=1}");
    EXPECT_EQ(other.GetAttribute("x"), target);
    EXPECT_EQ(other.GetAttribute("b"), nullptr);
    *target = OvXMLAttribute(nullptr, "c"); // no parent: it may be added, and leaves where it was
    EXPECT_EQ(parent.AddAttribute(target), target);
    EXPECT_EQ(described(&other), "o");
    EXPECT_EQ(described(&parent), "p{b=1,c=}");
    *target = OvXMLAttribute(nullptr, "c");
    target->Delete();
    EXPECT_EQ(described(&parent), "p{b=1}");
}

TEST(OvXMLNode, ComparesNames)
{
    const struct {
        const char* name;
        const char* asked;
        BOOL equal;
    } kCases[] = {
        { "Window", "wINDOW", TRUE }, { "Window", "Windows", FALSE },     { "a[", "a{", FALSE },
        { "", nullptr, TRUE },        { "\243\301B", "\243\341b", TRUE }, // full-width A, in two bytes
        { "\201A", "\201a", FALSE }, // the second bytes are letters only by themselves
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(OvXMLNode(nullptr, c.name).IsNamed(c.asked), c.equal);
    }
}

// Only these three may be called so. The compiler must not know where the pointer points, nor look there for a type.
__attribute__((no_sanitize("null"), no_sanitize("vptr"))) void call_on_null()
{
    OvXMLElement* volatile nothing = nullptr;
    EXPECT_FALSE(nothing->IsNamed("a"));
    EXPECT_FALSE(nothing->IsNamed(nullptr));
    EXPECT_EQ(nothing->GetFirstElement(), nullptr);
    nothing->Delete();
}

TEST(OvXMLNode, AnswersOnNull)
{
    call_on_null();
}

TEST(OvXMLElement, KeepsChildrenInOrder)
{
    OvXMLElement root(nullptr, "r");
    POSITION position = root.GetElementIterator();
    EXPECT_EQ(root.GetNextElement(position), nullptr);
    EXPECT_EQ(root.GetFirstElement(), nullptr);
    OvXMLElement* a = root.AddElement("a");
    auto* b = new OvXMLElement(nullptr, "b");
    EXPECT_EQ(root.AddElement(b), b);
    EXPECT_EQ(b->GetParent(), &root);
    EXPECT_EQ(root.AddElement(b), nullptr) << "it has a parent";
    root.AddElement("A");
    EXPECT_EQ(root.GetFirstElement(), a);
    EXPECT_EQ(root.GetElementByName("B"), b);
    EXPECT_EQ(root.GetElementByName("a"), a) << "the first of two";
    EXPECT_EQ(root.GetElementByName("c", FALSE), nullptr);
    OvXMLElement* c = root.GetElementByName("c", TRUE);
    EXPECT_EQ(root.GetElementByName("C", TRUE), c);
    EXPECT_EQ(described(&root), "r[a,b,A,c]");

    root.RemoveElement(a);
    EXPECT_EQ(a->GetParent(), &root);
    root.RemoveElement(a); // no longer there
    root.RemoveElement(nullptr);
    EXPECT_EQ(root.AddElement(a), nullptr) << "it still has a parent";
    EXPECT_EQ(root.AddElement(a->Detach()), a);
    EXPECT_EQ(c->Detach(), c);
    EXPECT_EQ(c->GetParent(), nullptr);
    EXPECT_EQ(c->Detach(), c) << "twice is as good as once";
    EXPECT_EQ(described(&root), "r[b,A,a]");
    delete c;
    b->Delete();
    EXPECT_EQ(root.AddElement(static_cast<OvXMLElement*>(nullptr)), nullptr);
    EXPECT_EQ(described(&root), "r[A,a]");
    root.DeleteAllElements();
    EXPECT_EQ(described(&root), "r");
}

TEST(OvXMLElement, RefusesItsAncestors)
{
    Tree root = parsed("<a><b><c/></b></a>");
    OvXMLElement* b = root->GetFirstElement();
    EXPECT_EQ(b->GetFirstElement()->AddElement(root.get()), nullptr);
    OvXMLElement leaf;
    EXPECT_EQ(leaf.AddElement(&leaf), nullptr);
    const Tree detached(b->Detach());
    OvXMLElement* c = detached->GetFirstElement();
    EXPECT_EQ(c->AddElement(detached.get()), nullptr);
    c->AddElement(root.release()); // no longer around it
    EXPECT_EQ(described(detached), "b[c[a]]");
}

// Parts of trees that were read, cloned and made by hand, in every order of death.
TEST(OvXMLElement, LivesOnWithoutItsDocument)
{
    Tree first = parsed("<a><b c='1'><d/></b><e/></a>");
    Tree b(first->GetFirstElement()->Detach());
    first.reset();
    EXPECT_EQ(described(b), "b{c=1}[d]");

    Tree second = parsed("<f><g/></f>");
    second->AddElement(b.release());
    OvXMLElement hand(nullptr, "h");
    hand.AddElement(second->Clone(nullptr));
    hand.AddElement(second.release());
    hand.GetFirstElement()->GetFirstElement()->AddElement("new")->AddAttribute("i", 2);
    EXPECT_EQ(described(&hand), "h[f[g[new{i=2}],b{c=1}[d]],f[g,b{c=1}[d]]]");
    hand.GetFirstElement()->Delete();
    EXPECT_EQ(described(&hand), "h[f[g,b{c=1}[d]]]");
    delete hand.GetFirstElement(); // takes itself out
    EXPECT_EQ(described(&hand), "h");
}

TEST(OvXMLElement, BelongsToOneThreadApartFromTheRest)
{
    Tree root = parsed("<a><b><c/><c/></b><b><c/><c/></b><b><c/><c/></b></a>");
    std::vector<Tree> parts;
    while (OvXMLElement* b = root->GetFirstElement())
        parts.emplace_back(b->Detach());
    std::vector<std::thread> threads;
    for (Tree& part : parts) {
        threads.emplace_back([&part] {
            part->GetFirstElement()->Delete();
            part->AddElement("d")->SetValue("x");
            EXPECT_EQ(described(parsed(part->ToString(0, 0).operator LPCSTR())), "b[c,d(x)]");
            part.reset();
        });
    }
    root.reset();
    for (std::thread& thread : threads)
        thread.join();
}

TEST(OvXMLElement, ClonesDeeply)
{
    const Tree source = parsed("<a b='1' s='2' C='3'>x<d e='4'><f/></d><g/></a>");
    ASSERT_EQ(described(source), "a{s=2,b=1,C=3}(x)[d{e=4}[f],g]");
    OvXMLElement parent(nullptr, "p");
    const Tree clone(source->Clone(&parent));
    EXPECT_EQ(clone->GetParent(), &parent);
    EXPECT_EQ(described(clone), "a{b=1,s=2,C=3}(x)[d{e=4}[f],g]") << "a shared bucket is turned round";
    EXPECT_EQ(clone->GetFirstElement()->GetParent(), clone.get());
    EXPECT_EQ(clone->GetAttribute("c")->GetParent(), clone.get());
    clone->GetFirstElement()->SetValue("changed");
    EXPECT_EQ(described(source), "a{s=2,b=1,C=3}(x)[d{e=4}[f],g]");

    const std::unique_ptr<OvXMLAttribute> attribute(source->GetAttribute("c")->Clone(&parent));
    EXPECT_EQ(attribute->GetName() + attribute->GetValue(), "C3");
    EXPECT_EQ(attribute->GetParent(), &parent);
    EXPECT_EQ(described(&parent), "p");

    // Keys that differ only in case meet in the clone.
    OvXMLElement mixed(nullptr, "m");
    mixed.AddAttribute("b", "1");
    mixed.AddAttribute(new OvXMLAttribute(nullptr, "B"));
    EXPECT_EQ(mixed.GetAttributeCount(), 2);
    EXPECT_EQ(Tree(mixed.Clone(nullptr))->GetAttributeCount(), 1);
}

TEST(OvXMLElement, ComparesTrees)
{
    const test::TextCase kCases[] = {
        { "attributes in another order", "<a c='2' b='1'>x<d/><e f='3'/></a>", "11" },
        { "children in another order", "<a b='1' c='2'>x<e f='3'/><d/></a>", "00" },
        { "another name", "<A b='1' c='2'>x<d/><e f='3'/></A>", "00" },
        { "another value", "<a b='1' c='2'>X<d/><e f='3'/></a>", "00" },
        { "an attribute's other name", "<a b='1' C='2'>x<d/><e f='3'/></a>", "00" },
        { "an attribute's other value", "<a b='1' c='3'>x<d/><e f='3'/></a>", "00" },
        { "one attribute more", "<a b='1' c='2' g=''>x<d/><e f='3'/></a>", "00" },
        { "another attribute", "<a b='1' g='2'>x<d/><e f='3'/></a>", "00" },
        { "a child less", "<a b='1' c='2'>x<d/></a>", "00" },
        { "a grandchild more", "<a b='1' c='2'>x<d/><e f='3'><h/></e></a>", "00" },
    };
    const Tree tree = parsed("<a b='1' c='2'>x<d/><e f='3'/></a>");
    test::expect_each(kCases, [&tree](const string& text) {
        const Tree other = parsed(text);
        return std::to_string(tree->Equals(other.get())) + std::to_string(other->Equals(tree.get()));
    });
    EXPECT_TRUE(tree->Equals(tree.get()));
    EXPECT_FALSE(tree->Equals(nullptr));
    EXPECT_FALSE(tree->GetAttribute("b")->Equals(nullptr));
}

// A derived class: its own destructor runs, and its memory goes where it came from.
struct Counted : OvXMLElement {
    explicit Counted(int& nLiving) : OvXMLElement(nullptr, "counted"), m_nLiving(nLiving) { m_nLiving++; }
    ~Counted() override { m_nLiving--; }
    int& m_nLiving;
    char padding[100] = {};
};

TEST(OvXMLElement, DestroysWhatWasDerived)
{
    int living = 0;
    Tree tree = parsed("<a><b/></a>");
    tree->GetFirstElement()->AddElement(new Counted(living))->AddElement(new Counted(living));
    EXPECT_EQ(living, 2);
    tree.reset();
    EXPECT_EQ(living, 0);
}

TEST(OvXMLAttributes, AreFoundIgnoringCase)
{
    OvXMLElement element(nullptr, "e");
    OvXMLAttribute* b = element.AddAttribute("B", "1");
    EXPECT_EQ(b->GetParent(), &element);
    EXPECT_EQ(element.AddAttribute("b", "2"), b) << "reused";
    EXPECT_EQ(element.AddAttribute("b", static_cast<const char*>(nullptr)), b);
    EXPECT_EQ(described(&element), "e{B=2}") << "with the name and value it had";
    EXPECT_EQ(element.AddAttribute("c", static_cast<const char*>(nullptr))->GetValue(), "");
    EXPECT_EQ(element.GetAttribute("d"), nullptr);
    EXPECT_EQ(element.GetAttribute(nullptr), nullptr);
    // Only the letters of ASCII: full-width A and a are two names here.
    element.AddAttribute("\xa3\xc1", "3");
    EXPECT_EQ(element.GetAttribute("\xa3\xe1"), nullptr);
    EXPECT_NE(element.GetAttribute("\xa3\xc1"), nullptr);
    // A clone has the system's lower case for a key.
    const Tree clone(element.Clone(nullptr));
    EXPECT_EQ(clone->GetAttribute("\xa3\xc1"), nullptr);
    ASSERT_NE(clone->GetAttribute("\xa3\xe1"), nullptr);
    EXPECT_EQ(clone->GetAttribute("\xa3\xe1")->GetName(), "\xa3\xc1");

    EXPECT_EQ(element.AddAttribute("n", -12)->GetValue(), "-12");
    EXPECT_EQ(element.AddAttribute("n", 0xFF030201UL)->GetValue(), "1,2,3");
    EXPECT_EQ(element.AddAttribute("n", COLORREF{ 0x0000FF })->GetValue(), "255,0,0");
}

TEST(OvXMLAttributes, AreReadAsNumbers)
{
    const struct {
        const char* text;     // null: no such attribute
        int number;           // 77 is the default
        unsigned long colour; // 0xFF112233 is the default: red 0x33, green 0x22, and 0x33 for blue
    } kCases[] = {
        { nullptr, 77, 0xFF112233 },
        { "", 77, 0xFF112233 },
        { "12px", 12, 0x33220C },
        { "px", 0, 0x332233 },
        { " -3", -3, 0x3322FD },
        { "+4", 4, 0x332204 },
        { "99999999999", 2147483647, 0x3322FF },
        { "-99999999999", -2147483647 - 1, 0x332201 },
        { "300,2,3", 300, 0x03022C },
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
        EXPECT_EQ(element.GetAttributeValueColor("a", 0xFF112233), c.colour);
        EXPECT_EQ(element.GetAttributeValue("a", "default"), c.text ? c.text : "default");
        EXPECT_EQ(element.GetAttributeValue("a", nullptr), c.text ? c.text : "");
    }
}

TEST(OvXMLAttributes, AreStoredAsWritten)
{
    OvXMLElement element(nullptr, "e");
    auto* width = new OvXMLAttribute(nullptr, "Width");
    EXPECT_EQ(element.AddAttribute(width), width);
    EXPECT_EQ(width->GetParent(), &element);
    EXPECT_EQ(element.GetAttribute("Width"), nullptr);
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
    const Tree element = parsed("<e b='2' c='3' d='4'/>");
    const std::unique_ptr<OvXMLAttribute> b(element->GetAttribute("b"));
    element->RemoveAttribute(b.get());
    element->RemoveAttribute(b.get()); // no longer there
    element->RemoveAttribute(nullptr);
    EXPECT_EQ(b->GetParent(), element.get());
    element->DeleteAttribute("D");
    element->DeleteAttribute("none");
    EXPECT_EQ(described(element), "e{c=3}");
    element->DeleteAllAttributes();
    POSITION position = element->GetAttributeIterator();
    EXPECT_EQ(position, nullptr);
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

// Few and many, so with and without the element's index.
TEST(OvXMLAttributes, KeepTheirOrderHoweverMany)
{
    std::mt19937 random(7);
    for (int round = 0; round < 20; round++) {
        OvXMLElement element(nullptr, "e");
        test::HashOrder expected;
        for (int i = 0; i < 200; i++) {
            const string key = "k" + std::to_string(random() % 60) + "\xe9";
            if (random() % (i < 100 ? 4 : 2) > 0) {
                element.AddAttribute(key.c_str(), i);
                expected.set(key, key + "=" + std::to_string(i));
            } else {
                element.DeleteAttribute(key.c_str());
                expected.erase(key);
            }
            const string walked = expected.walked();
            ASSERT_EQ(described(&element), walked.empty() ? "e" : "e{" + walked + "}") << i;
        }
    }
}

} // namespace
