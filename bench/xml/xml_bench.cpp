// Reading, writing, storing and loading skins, beside tinyxml2, pugixml and Boost.Serialization in the same run, and
// beside what no reader or writer can beat: finding every "<" and copying the output. Prints the ratios at the end.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <functional>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <malloc.h>

#include <benchmark/benchmark.h>
#include <boost/archive/binary_iarchive.hpp>
#include <boost/archive/binary_oarchive.hpp>
#include <boost/serialization/string.hpp>
#include <boost/serialization/utility.hpp>
#include <boost/serialization/vector.hpp>
#include <pugixml.hpp>
#include <tinyxml2.h>

#include "SkinText.h"
#include "xml/OvXML.h"

namespace {

// The same tree as plain data, as one would have it stored by Boost.
struct PlainNode {
    std::string name;
    std::string value;
    std::vector<std::pair<std::string, std::string>> attributes;
    std::vector<PlainNode> children;

    template <class Archive>
    void serialize(Archive& archive, unsigned)
    {
        archive& name& value& attributes& children;
    }
};

PlainNode plain(const OvXMLElement* element)
{
    const auto text = [](const CString& s) { return std::string(s, static_cast<std::size_t>(s.GetLength())); };
    PlainNode node{ text(element->GetName()), text(element->GetValue()), {}, {} };
    for (POSITION position = element->GetAttributeIterator(); position;) {
        const OvXMLAttribute* attribute = element->GetNextAttribute(position);
        node.attributes.emplace_back(text(attribute->GetName()), text(attribute->GetValue()));
    }
    for (POSITION position = element->GetElementIterator(); position;)
        node.children.push_back(plain(element->GetNextElement(position)));
    return node;
}

} // namespace

BOOST_CLASS_IMPLEMENTATION(PlainNode, boost::serialization::object_serializable)
BOOST_CLASS_TRACKING(PlainNode, boost::serialization::track_never)

namespace {

using Tree = std::unique_ptr<OvXMLElement>;
constexpr auto kBoostFlags = boost::archive::no_header | boost::archive::no_codecvt;

Tree parsed(const std::string& text)
{
    return Tree(OvXMLElement::FromString(text.c_str(), TRUE));
}

// Every case runs for every document; throughput is that of the document's text.
using Case = std::function<void(benchmark::State&, const std::string&)>;

void parse_ours(benchmark::State& state, const std::string& text)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(parsed(text).get());
}

void parse_tinyxml2(benchmark::State& state, const std::string& text)
{
    for (auto _ : state) {
        tinyxml2::XMLDocument document;
        benchmark::DoNotOptimize(document.Parse(text.data(), text.size()));
    }
}

void parse_pugixml(benchmark::State& state, const std::string& text)
{
    for (auto _ : state) {
        pugi::xml_document document;
        benchmark::DoNotOptimize(
            document.load_buffer(text.data(), text.size(), pugi::parse_default, pugi::encoding_utf8));
    }
}

void limit_memchr(benchmark::State& state, const std::string& text)
{
    for (auto _ : state) {
        std::size_t found = 0;
        const char* end = text.data() + text.size();
        for (const char* p = text.data(); (p = static_cast<const char*>(std::memchr(p, '<', end - p))); p++)
            found++;
        benchmark::DoNotOptimize(found);
    }
}

void write_ours(benchmark::State& state, const std::string& text)
{
    const Tree tree = parsed(text);
    for (auto _ : state)
        benchmark::DoNotOptimize(tree->ToString(TRUE, TRUE).GetLength());
}

void write_tinyxml2(benchmark::State& state, const std::string& text)
{
    tinyxml2::XMLDocument document;
    document.Parse(text.data(), text.size());
    for (auto _ : state) {
        tinyxml2::XMLPrinter printer;
        document.Print(&printer);
        benchmark::DoNotOptimize(printer.CStr());
    }
}

void limit_memcpy(benchmark::State& state, const std::string& text)
{
    const CString output = parsed(text)->ToString(TRUE, TRUE);
    for (auto _ : state) {
        CString copy(output, output.GetLength());
        benchmark::DoNotOptimize(copy.GetLength());
    }
}

void archive_ours(benchmark::State& state, const std::string& text)
{
    const Tree tree = parsed(text);
    for (auto _ : state) {
        CMemFile file;
        CArchive store(&file, CArchive::store);
        tree->Serialize(store);
        store.Close();
        file.SeekToBegin();
        CArchive load(&file, CArchive::load);
        const auto loaded = std::make_unique<OvXMLElement>();
        loaded->Serialize(load);
        benchmark::DoNotOptimize(loaded->GetElementCount());
    }
}

void archive_boost(benchmark::State& state, const std::string& text)
{
    const PlainNode tree = plain(parsed(text).get());
    for (auto _ : state) {
        std::stringstream stream;
        boost::archive::binary_oarchive(stream, kBoostFlags) << tree;
        PlainNode loaded;
        boost::archive::binary_iarchive(stream, kBoostFlags) >> loaded;
        benchmark::DoNotOptimize(loaded.children.size());
    }
}

std::size_t heap_in_use()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// What the document holds of the heap, once it is read.
template <class Read>
std::size_t heap_of(Read read)
{
    const std::size_t before = heap_in_use();
    const auto document = read();
    return heap_in_use() - before;
}

class Results : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            // Of repeated runs the median counts.
            if (run.run_type != Run::RT_Aggregate || run.aggregate_name == "median")
                times_[run.run_name.function_name] = run.GetAdjustedCPUTime();
        }
    }
    // Not a number for what a filter left out.
    double time(const std::string& name) const
    {
        const auto found = times_.find(name);
        return found == times_.end() ? std::numeric_limits<double>::quiet_NaN() : found->second;
    }

private:
    std::map<std::string, double> times_;
};

struct Ratio {
    const char* what;
    const char* ours;
    const char* other;
    double wanted; // other's time over ours; 0: no more than a measure
};
constexpr Ratio kRatios[] = {
    { "parse and free, tinyxml2", "parse", "parse_tinyxml2", 2.5 },
    { "parse and free, pugixml", "parse", "parse_pugixml", 0.5 },
    { "parse and free, memchr", "parse", "parse_limit", 0 },
    { "write, tinyxml2", "write", "write_tinyxml2", 2 },
    { "write, memcpy", "write", "write_limit", 0 },
    { "store and load, Boost", "archive", "archive_boost", 1 },
};

struct Document {
    const char* name;
    std::string text;
};

void print_ratios(const Results& results, const std::vector<Document>& documents)
{
    std::printf("\nSpeed, as a multiple of the other's (wanted)\n%-28s", "");
    for (const Document& document : documents)
        std::printf("%10s", document.name);
    for (const Ratio& ratio : kRatios) {
        std::printf("\n%-28s", ratio.what);
        for (const Document& document : documents) {
            const std::string suffix = std::string("/") + document.name;
            std::printf("%10.2f", results.time(ratio.other + suffix) / results.time(ratio.ours + suffix));
        }
        if (ratio.wanted > 0)
            std::printf("   (%.1f)", ratio.wanted);
    }
    std::printf("\n");
}

void print_heap(const Document& document)
{
    const std::string& text = document.text;
    const std::size_t ours = heap_of([&] { return parsed(text); });
    const std::size_t tiny = heap_of([&] {
        auto tree = std::make_unique<tinyxml2::XMLDocument>();
        tree->Parse(text.data(), text.size());
        return tree;
    });
    const std::size_t pugi = heap_of([&] {
        auto tree = std::make_unique<pugi::xml_document>();
        tree->load_buffer(text.data(), text.size(), pugi::parse_default, pugi::encoding_utf8);
        return tree;
    });
    std::printf("\nHeap for the %s document (%zu bytes): ours %zu, tinyxml2 %zu, pugixml %zu: %.2f of tinyxml2's\n",
                document.name, text.size(), ours, tiny, pugi, static_cast<double>(ours) / static_cast<double>(tiny));
}

std::string repeated(const std::string& piece, std::size_t count)
{
    std::string text;
    text.reserve(piece.size() * count);
    for (std::size_t i = 0; i < count; i++)
        text += piece;
    return text;
}

std::string with_many_attributes(std::size_t count)
{
    std::string text = "<a";
    for (std::size_t i = 0; i < count; i++)
        text.append(" n").append(std::to_string(i)).append("='1'");
    return text + "/>";
}

// Documents that ask for more than they give, at a size and at twice that size.
struct Shape {
    const char* name;
    std::size_t count;
    std::function<std::string(std::size_t)> text;
};
const Shape kShapes[] = {
    { "deep: nested elements", 500000,
      [](std::size_t n) { return repeated("<a b='1'>", n) + "x" + repeated("</a>", n); } },
    { "flat: one element's children", 500000, [](std::size_t n) { return "<a>" + repeated("x<b/>", n) + "</a>"; } },
    { "wide: one element's attributes", 400000, with_many_attributes },
    { "hostile: numbers without \";\"", 4000000, [](std::size_t n) { return "<a>" + repeated("&#65", n) + "</a>"; } },
    { "hostile: comments", 500000, [](std::size_t n) { return "<a>" + repeated("x<!---->", n) + "</a>"; } },
    { "hostile: unclosed elements", 500000, [](std::size_t n) { return repeated("<a>x ", n); } },
};

// The processor time of the quickest of a few turns, in milliseconds.
double parse_time(const std::string& text)
{
    double best = 1e9;
    for (int turn = 0; turn < 7; turn++) {
        const std::clock_t start = std::clock();
        delete OvXMLElement::FromString(text.c_str(), FALSE);
        best = std::min(best, static_cast<double>(std::clock() - start) * 1000 / CLOCKS_PER_SEC);
    }
    return best;
}

void print_growth()
{
    std::printf("\nParse and free, in ms, at a size and at twice that size (wanted: a ratio below 2.3)\n");
    for (const Shape& shape : kShapes) {
        const double once = parse_time(shape.text(shape.count));
        const double twice = parse_time(shape.text(2 * shape.count));
        std::printf("%-34s%10zu%10.2f%10.2f%8.2f\n", shape.name, shape.count, once, twice, twice / once);
    }
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<Document> documents = { { "8K", SkinText(8 << 10) },
                                              { "200K", SkinText(200 << 10) },
                                              { "4M", SkinText(4 << 20) } };
    const std::pair<const char*, Case> cases[] = {
        { "parse", parse_ours },
        { "parse_tinyxml2", parse_tinyxml2 },
        { "parse_pugixml", parse_pugixml },
        { "parse_limit", limit_memchr },
        { "write", write_ours },
        { "write_tinyxml2", write_tinyxml2 },
        { "write_limit", limit_memcpy },
        { "archive", archive_ours },
        { "archive_boost", archive_boost },
    };
    for (const auto& [name, run] : cases) {
        for (const Document& document : documents) {
            const auto measure = [run = run, &document](benchmark::State& state) {
                run(state, document.text);
                state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * document.text.size()));
            };
            benchmark::RegisterBenchmark((std::string(name) + "/" + document.name).c_str(), measure);
        }
    }
    benchmark::Initialize(&argc, argv);
    print_heap(documents.back());
    Results results;
    if (benchmark::RunSpecifiedBenchmarks(&results) < std::size(cases) * documents.size())
        return 0; // only some were asked for
    print_ratios(results, documents);
    print_growth();
}
