// Documents that are deep, wide, flat or hostile. Where work would grow with the square of the size, these would not
// end within any patience; where depth cost stack, they would crash.
#include "tests/xml/Trees.h"

#include <pthread.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "xml/OvXMLPool.h"

namespace {

using std::string;
using test::bytes_of;
using test::parsed;
using test::Tree;

string repeated(const string& piece, int count)
{
    string text;
    for (int i = 0; i < count; i++)
        text += piece;
    return text;
}

// Everything that a tree can be put through, in a thread with a stack of 256 KiB.
TEST(OvXMLBounds, AMillionNestedElements)
{
    const auto live = [](void*) -> void* {
        constexpr int kDepth = 1000000;
        const string text = repeated("<a b='1'>", kDepth) + "x" + repeated("</a>", kDepth);
        const Tree tree = parsed(text);
        Tree clone(tree->Clone(nullptr));
        EXPECT_TRUE(clone->Equals(tree.get()));
        EXPECT_EQ(bytes_of(clone->ToString(0, 0)).size(), text.size());
        EXPECT_EQ(clone->GetRecursiveWords().GetLength(), 2 * kDepth + 1);

        CMemFile file;
        CArchive store(&file, CArchive::store);
        clone->Serialize(store);
        store.Close();
        file.SeekToBegin();
        CArchive load(&file, CArchive::load);
        auto loaded = std::make_unique<OvXMLElement>();
        loaded->Serialize(load);
        EXPECT_TRUE(loaded->Equals(tree.get()));

        // Apart from its pool's own way out: one made by hand, one that failed, one that is taken apart.
        loaded.reset();
        clone->AddElement("by hand");
        clone.reset();
        EXPECT_EQ(parsed(repeated("<a b='1'>", kDepth) + "</b>"), nullptr);
        OvXMLElement hand;
        OvXMLElement* place = &hand;
        for (int i = 0; i < kDepth; i++)
            place = place->AddElement("a");
        Tree inner(new OvXMLElement);
        for (int i = 0; i < kDepth; i++) { // from within to without
            auto* outer = new OvXMLElement;
            outer->AddElement(inner.release());
            inner.reset(outer);
        }
        return nullptr;
    };
    pthread_attr_t small{};
    pthread_attr_init(&small);
    ASSERT_EQ(pthread_attr_setstacksize(&small, 256 * 1024), 0);
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, &small, live, nullptr), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&small);
}

TEST(OvXMLBounds, FlatAndHostileDocuments)
{
    constexpr int kCount = 1000000;
    const struct {
        const char* why;
        string text;
        int children; // -1: no document
    } kCases[] = {
        { "flat with text between", "<a>" + repeated("x<b/>", kCount) + "</a>", kCount },
        { "comments", "<a>" + repeated("x<!---->", kCount) + "</a>", 0 },
        { "CDATA", "<a>" + repeated("<![CDATA[x]]><!---->", kCount) + "</a>", 0 },
        { "references", "<a>" + repeated("&#65;&amp;&x;", kCount) + "</a>", 0 },
        { "references without semicolons", "<a>" + repeated("&#65", kCount) + "</a>", 0 },
        { "one semicolon at the end", "<a>" + repeated("&#65", kCount) + ";</a>", 0 },
        { "ampersands", "<a b='" + repeated("&", kCount) + "'/>", 0 },
        { "unclosed tags", repeated("<", kCount), -1 },
        { "unclosed elements", repeated("<a>", kCount), -1 },
        { "unclosed elements with text", repeated("<a>x ", kCount), -1 },
        { "unclosed comments", "<a>" + repeated("<!--", kCount), -1 },
        { "unclosed CDATA", "<a>" + repeated("<![CDATA[", kCount), -1 },
        { "white space in a tag", "<a" + repeated(" ", kCount) + "/>", 0 },
        { "white space before every token", "<a>" + repeated("  \n\t ", kCount) + "</a>", 0 },
        { "end tags of another element", "<a>" + repeated("</aa", kCount), -1 },
        { "one repeated attribute", "<a" + repeated(" b='1'", kCount) + "/>", 0 },
        { "white space behind a word, over and over", "<a>" + repeated("x                <b/>", kCount) + "</a>",
          kCount },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        const Tree tree = parsed(c.text);
        EXPECT_EQ(tree ? tree->GetElementCount() : -1, c.children);
    }
    const Tree flat = parsed(kCases[0].text);
    while (OvXMLElement* child = flat->GetFirstElement())
        child->Delete();
    EXPECT_EQ(flat->GetValue().GetLength(), 2 * kCount - 1);
}

TEST(OvXMLBounds, ElementsWithManyAttributes)
{
    constexpr int kCount = 200000;
    string text = "<a";
    for (int i = 0; i < kCount; i++)
        text.append(" n").append(std::to_string(i)).append("='1'");
    text += "/>";
    const Tree tree = parsed(text);
    ASSERT_TRUE(tree);
    EXPECT_EQ(tree->GetAttributeCount(), kCount);
    const Tree clone(tree->Clone(nullptr));
    EXPECT_TRUE(clone->Equals(tree.get()));
    for (int i = 0; i < kCount; i++) {
        const string name = string("N").append(std::to_string(i));
        EXPECT_EQ(clone->AddAttribute(name.c_str(), i)->GetValue(), std::to_string(i).c_str());
        clone->DeleteAttribute(name.c_str());
    }
    EXPECT_EQ(clone->GetAttributeCount(), 0);
}

// What documents cost of memory can be counted: it must grow as they do.
std::atomic<size_t> g_allocated{ 0 };
std::atomic<int> g_blocks_left{ 0 };

void* count_blocks(size_t size)
{
    g_allocated += size;
    return std::malloc(size);
}

void* fail_after_some(size_t size)
{
    return g_blocks_left-- > 0 ? std::malloc(size) : nullptr;
}

class BlockSource {
public:
    explicit BlockSource(OvXMLPool::Source source) : before_(OvXMLPool::ExchangeSource(source)) {}
    ~BlockSource() { OvXMLPool::ExchangeSource(before_); }
    BlockSource(const BlockSource&) = delete;
    BlockSource& operator=(const BlockSource&) = delete;

private:
    const OvXMLPool::Source before_;
};

TEST(OvXMLBounds, MemoryGrowsWithTheDocument)
{
    const BlockSource source(count_blocks);
    const auto allocated_for = [](const string& piece, int count) {
        g_allocated = 0;
        const Tree tree = parsed("<a>" + repeated(piece, count) + "</a>");
        EXPECT_TRUE(tree);
        return static_cast<double>(g_allocated);
    };
    for (const char* piece : { "<b c='1'/>", "x<b/>", "x             <b/>", "&lt;<!---->", "<b>x<c/>y<c/>z</b>" }) {
        SCOPED_TRACE(piece);
        const double once = allocated_for(piece, 400000);
        EXPECT_LT(allocated_for(piece, 800000) / once, 2.3);
    }
}

TEST(OvXMLBounds, MemoryThatRunsOut)
{
    const BlockSource source(fail_after_some);
    const string text = "<a>" + repeated("x<b c='1' d=' &amp; '/>", 20000) + repeated("y", 200000) + "</a>";
    int blocks = 0;
    for (g_blocks_left = 0; !parsed(text); g_blocks_left = blocks)
        ASSERT_LT(blocks++, 100);
    EXPECT_GT(blocks, 5);

    g_blocks_left = 100;
    const Tree tree = parsed(text);
    g_blocks_left = 3;
    EXPECT_THROW(tree->Clone(nullptr), CMemoryException*);
    const char* cursor = text.c_str();
    OvXMLElement element;
    g_blocks_left = 3;
    EXPECT_THROW(element.ParseString(cursor), CMemoryException*);
}

} // namespace
