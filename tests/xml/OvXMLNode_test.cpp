#include "tests/xml/Trees.h"

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

using std::string;
using test::described;
using test::parsed;
using test::Tree;

TEST(OvXMLNode, TellsItsType)
{
    OvXMLElement parent;
    OvXMLNode node(&parent, "n");
    OvXMLElement element(&parent, "e");
    OvXMLAttribute attribute(&parent, "a");
    const struct {
        OvXMLNode* node;
        int type;
        OvXMLElement* element;
        OvXMLAttribute* attribute;
        const char* name;
    } kCases[] = { { &node, 0, nullptr, nullptr, "n" },
                   { &element, 1, &element, nullptr, "e" },
                   { &attribute, 2, nullptr, &attribute, "a" } };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(c.node->GetType(), c.type);
        EXPECT_EQ(c.node->AsNode(), c.node);
        EXPECT_EQ(c.node->AsElement(), c.element);
        EXPECT_EQ(c.node->AsAttribute(), c.attribute);
        EXPECT_EQ(c.node->GetParent(), &parent);
        EXPECT_EQ(c.node->GetName(), c.name);
        EXPECT_EQ(c.node->GetValue(), "");
        c.node->SetName("other");
        c.node->SetValue("v");
        EXPECT_EQ(c.node->GetName() + c.node->GetValue(), "otherv");
        c.node->SetValue(nullptr);
        c.node->SetName(nullptr);
        EXPECT_EQ(c.node->GetName() + c.node->GetValue(), "");
    }
    EXPECT_EQ(described(&parent), "") << "constructing puts nothing into the parent";
    EXPECT_EQ(OvXMLElement().GetParent(), nullptr);
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
    target->Delete();
    EXPECT_EQ(described(&other), "o");
    EXPECT_EQ(described(&parent), "p{b=1}");
}

TEST(OvXMLNode, ComparesNames)
{
    const struct {
        const char* name;
        const char* asked;
        BOOL equal;
    } kCases[] = {
        { "Window", "wINDOW", TRUE },
        { "Window", "Windows", FALSE },
        { "a[", "a{", FALSE },
        { "", nullptr, TRUE },
        { "\xa3\xc1", "\xa3\xe1", TRUE },  // full-width A, in two bytes
        { "\x81\x41", "\x81\x61", FALSE }, // the second bytes are letters only by themselves
        { "\xa3\xc1"
          "B",
          "\xa3\xc1"
          "b",
          TRUE },
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
    EXPECT_EQ(root.GetElementIterator(), nullptr);
    EXPECT_EQ(root.GetFirstElement(), nullptr);
    OvXMLElement* a = root.AddElement("a");
    auto* b = new OvXMLElement(nullptr, "b");
    EXPECT_EQ(root.AddElement(b), b);
    EXPECT_EQ(b->GetParent(), &root);
    EXPECT_EQ(root.AddElement(b), nullptr) << "it has a parent";
    root.AddElement("A");
    EXPECT_EQ(described(&root), "r[a,b,A]");
    EXPECT_EQ(root.GetElementCount(), 3);
    EXPECT_EQ(root.GetFirstElement(), a);
    EXPECT_EQ(root.GetElementByName("B"), b);
    EXPECT_EQ(root.GetElementByName("a"), a) << "the first of two";
    EXPECT_EQ(root.GetElementByName("c"), nullptr);
    EXPECT_EQ(root.GetElementByName("c", FALSE), nullptr);
    OvXMLElement* c = root.GetElementByName("c", TRUE);
    EXPECT_EQ(root.GetElementByName("C", TRUE), c);
    EXPECT_EQ(described(&root), "r[a,b,A,c]");

    root.RemoveElement(a);
    EXPECT_EQ(a->GetParent(), &root);
    root.RemoveElement(a); // no longer there
    root.RemoveElement(nullptr);
    EXPECT_EQ(described(&root), "r[b,A,c]");
    EXPECT_EQ(root.AddElement(a), nullptr) << "it still has a parent";
    EXPECT_EQ(root.AddElement(a->Detach()), a);
    EXPECT_EQ(c->Detach(), c);
    EXPECT_EQ(c->GetParent(), nullptr);
    EXPECT_EQ(c->Detach(), c) << "twice is as good as once";
    EXPECT_EQ(described(&root), "r[b,A,a]");
    delete c;
    b->Delete();
    EXPECT_EQ(described(&root), "r[A,a]");
    root.DeleteAllElements();
    EXPECT_EQ(described(&root), "r");
    EXPECT_EQ(root.AddElement(static_cast<OvXMLElement*>(nullptr)), nullptr);
    POSITION position = nullptr;
    EXPECT_EQ(root.GetNextElement(position), nullptr);
}

TEST(OvXMLElement, RefusesItsAncestors)
{
    const Tree root = parsed("<a><b><c/></b></a>");
    OvXMLElement* b = root->GetFirstElement();
    EXPECT_EQ(b->GetFirstElement()->AddElement(root.get()), nullptr);
    EXPECT_EQ(root->AddElement(root.get()), nullptr);
    Tree detached(b->Detach());
    EXPECT_EQ(detached->GetFirstElement()->AddElement(detached.get()), nullptr);
    EXPECT_EQ(described(detached), "b[c]");
    OvXMLElement* c = detached->GetFirstElement();
    c->AddElement(root->Detach()); // no longer around it
    EXPECT_EQ(described(detached), "b[c[a]]");
    (void)root.get()->Detach();
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
    EXPECT_EQ(parent.GetElementCount(), 0);
    EXPECT_EQ(described(clone), "a{b=1,s=2,C=3}(x)[d{e=4}[f],g]") << "a shared bucket is turned round";
    EXPECT_EQ(clone->GetFirstElement()->GetParent(), clone.get());
    EXPECT_EQ(clone->GetAttribute("c")->GetParent(), clone.get());
    EXPECT_TRUE(clone->Equals(source.get()));
    EXPECT_TRUE(source->Equals(clone.get()));
    clone->GetFirstElement()->SetValue("changed");
    EXPECT_EQ(described(source), "a{s=2,b=1,C=3}(x)[d{e=4}[f],g]");

    const std::unique_ptr<OvXMLAttribute> attribute(source->GetAttribute("c")->Clone(&parent));
    EXPECT_EQ(attribute->GetName() + attribute->GetValue(), "C3");
    EXPECT_EQ(attribute->GetParent(), &parent);
    EXPECT_EQ(parent.GetAttributeCount(), 0);

    // Keys that differ only in case meet in the clone.
    OvXMLElement mixed(nullptr, "m");
    mixed.AddAttribute("b", "1");
    auto* written = new OvXMLAttribute(nullptr, "B");
    mixed.AddAttribute(written);
    EXPECT_EQ(mixed.GetAttributeCount(), 2);
    const Tree merged(mixed.Clone(nullptr));
    EXPECT_EQ(merged->GetAttributeCount(), 1);
}

TEST(OvXMLElement, ComparesTrees)
{
    const struct {
        const char* why;
        const char* other;
        BOOL equal;
    } kCases[] = {
        { "the same", "<a b='1' c='2'>x<d/><e f='3'/></a>", TRUE },
        { "attributes in another order", "<a c='2' b='1'>x<d/><e f='3'/></a>", TRUE },
        { "children in another order", "<a b='1' c='2'>x<e f='3'/><d/></a>", FALSE },
        { "another name", "<A b='1' c='2'>x<d/><e f='3'/></A>", FALSE },
        { "another value", "<a b='1' c='2'>X<d/><e f='3'/></a>", FALSE },
        { "an attribute's other name", "<a b='1' C='2'>x<d/><e f='3'/></a>", FALSE },
        { "an attribute's other value", "<a b='1' c='3'>x<d/><e f='3'/></a>", FALSE },
        { "one attribute more", "<a b='1' c='2' g=''>x<d/><e f='3'/></a>", FALSE },
        { "another attribute", "<a b='1' g='2'>x<d/><e f='3'/></a>", FALSE },
        { "a child less", "<a b='1' c='2'>x<d/></a>", FALSE },
        { "a difference deep down", "<a b='1' c='2'>x<d/><e f='4'/></a>", FALSE },
        { "a grandchild more", "<a b='1' c='2'>x<d/><e f='3'><h/></e></a>", FALSE },
    };
    const Tree tree = parsed("<a b='1' c='2'>x<d/><e f='3'/></a>");
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        const Tree other = parsed(c.other);
        EXPECT_EQ(tree->Equals(other.get()), c.equal);
        EXPECT_EQ(other->Equals(tree.get()), c.equal);
    }
    EXPECT_TRUE(tree->Equals(tree.get()));
    EXPECT_FALSE(tree->Equals(nullptr));
    OvXMLAttribute* b = tree->GetAttribute("b");
    EXPECT_TRUE(b->Equals(b));
    EXPECT_FALSE(b->Equals(nullptr));
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
    const std::unique_ptr<OvXMLNode> node(new Counted(living));
    EXPECT_EQ(living, 1);
}

} // namespace
