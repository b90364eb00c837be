// The skin of the installer applied, beside the parsing of its text and the decoding of its picture; skins of many
// windows; window skins by name, beside a hash map; wrapped text, beside Pango's own wrapping.
#include "platform/win32/gdi/bitmap.h"
#include "platform/win32/gdi/dib.h"
#include "skin/GuiSkin.h"
#include "skin/GuiSkinWindow.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include <pango/pangocairo.h>

namespace {

using PelkGUI::GetGuiSkin;
using PelkGUI::GuiSkin;
using PelkGUI::GuiSkinWindow;

std::span<const std::byte> Resource(UINT nID, LPCSTR pszType)
{
    const HRSRC hFound = ::FindResourceA(nullptr, MAKEINTRESOURCEA(nID), pszType);
    return { static_cast<const std::byte*>(::LockResource(::LoadResource(nullptr, hFound))),
             ::SizeofResource(nullptr, hFound) };
}

void BM_Apply(benchmark::State& state)
{
    for (auto _ : state)
        GetGuiSkin().Apply(130, "STID");
    GetGuiSkin().Clear();
}

// The skin's text as a document.
void BM_ParseText(benchmark::State& state)
{
    const std::span<const std::byte> bytes = Resource(130, "STID");
    for (auto _ : state) {
        const CString strText(reinterpret_cast<const char*>(bytes.data()), static_cast<int>(bytes.size()));
        delete OvXMLElement::FromString(strText, TRUE);
    }
}

// Its picture as 32-bit pixels.
void BM_DecodePicture(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(win32::bitmap_from_resource(Resource(131, RT_BITMAP), win32::Lifetime::passing));
}

// Its picture as the floor takes it from resources, to be read where it stands.
void BM_TakePicture(benchmark::State& state)
{
    for (auto _ : state) {
        ::DeleteObject(
            static_cast<HBITMAP>(::LoadImageA(nullptr, MAKEINTRESOURCEA(131), IMAGE_BITMAP, 0, 0, LR_DEFAULTCOLOR)));
    }
}

constexpr int kWindows = 2000;

// A skin of so many windows of 50 parts each, all with the picture of one small file.
std::string LargeSkin(int nWindows)
{
    constexpr int kParts = 50;
    std::string text = "<?xml version=\"1.0\"?>\n<skin>\n<windowSkins>\n";
    for (int nWindow = 0; nWindow < nWindows; nWindow++) {
        const std::string strWindow = std::to_string(nWindow);
        text +=
            "<windowSkin>\n  <image path=\"one.bmp\"/>\n  <target window=\"Window" + strWindow + "\"/>\n  <parts>\n";
        for (int nPart = 0; nPart < kParts; nPart++) {
            const std::string strPart = std::to_string(nPart);
            text += "    <part name=\"_" + strPart + ".Up\" rect=\"" + strPart + "," + strWindow + ",78,30\"/>\n";
        }
        text += "  </parts>\n</windowSkin>\n";
    }
    return text + "</windowSkins>\n</skin>\n";
}

// The small file, in the current folder.
class OnePixel {
public:
    OnePixel()
    {
        const BITMAPFILEHEADER file{ 0x4D42, 58, 0, 0, 54 };
        const BITMAPINFOHEADER header{ 40, 1, 1, 1, 24, BI_RGB, 0, 0, 0, 0, 0 };
        std::FILE* const pFile = std::fopen("one.bmp", "wb");
        std::fwrite(&file, sizeof file, 1, pFile);
        std::fwrite(&header, sizeof header, 1, pFile);
        std::fwrite("\x1\x2\x3", 4, 1, pFile);
        std::fclose(pFile);
    }
    ~OnePixel() { std::remove("one.bmp"); }
    OnePixel(const OnePixel&) = delete;
    OnePixel& operator=(const OnePixel&) = delete;
};

std::vector<std::string> WindowNames()
{
    std::vector<std::string> names;
    for (int i = 0; i < kWindows; i++)
        names.push_back("Window" + std::to_string(i * 7 % kWindows));
    return names;
}

void BM_FindWindow(benchmark::State& state)
{
    GuiSkin skin;
    skin.LoadFromString(LargeSkin(kWindows).c_str(), "");
    const std::vector<std::string> names = WindowNames();
    for (size_t i = 0; auto _ : state)
        benchmark::DoNotOptimize(skin.GetWindowSkin(names[i++ % kWindows].c_str(), nullptr));
}

void BM_FindInHashMap(benchmark::State& state)
{
    std::unordered_map<std::string, int> map;
    const std::vector<std::string> names = WindowNames();
    for (int i = 0; i < kWindows; i++)
        map.emplace(names[static_cast<size_t>(i)], i);
    for (size_t i = 0; auto _ : state)
        benchmark::DoNotOptimize(map.find(names[i++ % kWindows]));
}

// 600 characters each, in the code page and in UTF-8.
struct WrappedText {
    std::string strBytes;
    std::string strUtf8;
};

std::string Repeated(const std::string& strPiece, size_t nTimes)
{
    std::string text;
    for (size_t i = 0; i < nTimes; i++)
        text += strPiece;
    return text;
}

using Texts = std::vector<WrappedText>;

const std::string kLatinWords = Repeated("The quick brown fox jumps over the lazy dog, twice. It was 20:15. ", 10);
// One text, as a window that is painted again draws it.
const Texts kLatin = { { kLatinWords.substr(0, 600), kLatinWords.substr(0, 600) } };
const Texts kChinese = { { Repeated("\xd5\xfd\xd4\xda\xb0\xb2\xd7\xb0 \xc7\xeb\xc9\xd4\xba\xf2 ", 75),
                           Repeated("正在安装 请稍候 ", 75) } };

// So many texts of words that no other has that they are forgotten before they come again.
Texts NewTexts()
{
    Texts texts(200);
    unsigned nState = 1;
    for (WrappedText& text : texts) {
        while (text.strBytes.size() < 600) {
            nState = nState * 1664525 + 1013904223;
            text.strBytes += nState >> 24 < 40 ? ' ' : static_cast<char>('a' + (nState >> 16) % 26);
        }
        text.strUtf8 = text.strBytes;
    }
    return texts;
}
const Texts kNew = NewTexts();

constexpr int kWrapWidth = 300;
constexpr int kWrapHeight = 700;

void BM_WrapOurs(benchmark::State& state, const Texts& texts)
{
    CDC dc;
    dc.CreateCompatibleDC(nullptr);
    CBitmap bmp;
    bmp.CreateBitmap(kWrapWidth, kWrapHeight, 1, 32, nullptr);
    CBitmap* const pBefore = dc.SelectObject(&bmp);
    CFont font;
    font.CreateFont(-13, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, "Tahoma");
    CFont* const pFontBefore = dc.SelectObject(&font);
    dc.SetBkMode(TRANSPARENT);
    for (size_t i = 0; auto _ : state) {
        CRect rc(0, 0, kWrapWidth, kWrapHeight);
        GetGuiSkin().DrawWrappedText(&dc, &rc, texts[i++ % texts.size()].strBytes.c_str(), CPoint(), 0);
    }
    dc.SelectObject(pFontBefore);
    dc.SelectObject(pBefore);
}

void BM_WrapPango(benchmark::State& state, const Texts& texts)
{
    cairo_surface_t* const pSurface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, kWrapWidth, kWrapHeight);
    cairo_t* const pContext = cairo_create(pSurface);
    PangoLayout* const pLayout = pango_cairo_create_layout(pContext);
    PangoFontDescription* const pFont = pango_font_description_new();
    pango_font_description_set_family(pFont, "DejaVu Sans");
    pango_font_description_set_absolute_size(pFont, 13.0 * PANGO_SCALE);
    pango_layout_set_font_description(pLayout, pFont);
    pango_layout_set_width(pLayout, kWrapWidth * PANGO_SCALE);
    pango_layout_set_wrap(pLayout, PANGO_WRAP_WORD);
    for (size_t i = 0; auto _ : state) {
        pango_layout_set_text(pLayout, texts[i++ % texts.size()].strUtf8.c_str(), -1);
        cairo_move_to(pContext, 0, 0);
        pango_cairo_show_layout(pContext, pLayout);
    }
    pango_font_description_free(pFont);
    g_object_unref(pLayout);
    cairo_destroy(pContext);
    cairo_surface_destroy(pSurface);
}

BENCHMARK(BM_Apply)->Name("apply");
BENCHMARK(BM_ParseText)->Name("apply_parse_text");
BENCHMARK(BM_DecodePicture)->Name("apply_decode_picture");
BENCHMARK(BM_TakePicture)->Name("apply_take_picture");
BENCHMARK(BM_FindWindow)->Name("find_window");
BENCHMARK(BM_FindInHashMap)->Name("find_in_hash_map");
BENCHMARK_CAPTURE(BM_WrapOurs, latin, kLatin)->Name("wrap_latin");
BENCHMARK_CAPTURE(BM_WrapPango, latin, kLatin)->Name("wrap_latin_pango");
BENCHMARK_CAPTURE(BM_WrapOurs, chinese, kChinese)->Name("wrap_chinese");
BENCHMARK_CAPTURE(BM_WrapPango, chinese, kChinese)->Name("wrap_chinese_pango");
BENCHMARK_CAPTURE(BM_WrapOurs, new_words, kNew)->Name("wrap_new");
BENCHMARK_CAPTURE(BM_WrapPango, new_words, kNew)->Name("wrap_new_pango");

class Results : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            // Of repeated runs the median counts.
            if (run.run_type != Run::RT_Aggregate || run.aggregate_name == "median")
                m_times[run.run_name.function_name] = run.GetAdjustedCPUTime();
        }
    }
    // Of the rows named together, not a number if a filter left one out.
    double Time(const std::vector<const char*>& names) const
    {
        double sum = 0;
        for (const char* pszName : names) {
            const auto found = m_times.find(pszName);
            sum += found == m_times.end() ? std::numeric_limits<double>::quiet_NaN() : found->second;
        }
        return sum;
    }

private:
    std::map<std::string, double> m_times;
};

void PrintRatios(const Results& results)
{
    const struct {
        const char* pszWhat;
        const char* pszOurs;
        std::vector<const char*> others;
        double wanted; // at most
    } kRatios[] = {
        { "apply, to parsing and decoding", "apply", { "apply_parse_text", "apply_decode_picture" }, 1.3 },
        { "apply, to parsing and taking", "apply", { "apply_parse_text", "apply_take_picture" }, 1.3 },
        { "find one of 2,000 windows, to a hash map", "find_window", { "find_in_hash_map" }, 10 },
        { "600 Latin characters, to Pango", "wrap_latin", { "wrap_latin_pango" }, 1 },
        { "600 Chinese characters, to Pango", "wrap_chinese", { "wrap_chinese_pango" }, 1 },
        { "600 characters never seen before, to Pango", "wrap_new", { "wrap_new_pango" }, 1 },
    };
    std::printf("\nTime, as a multiple of the other's (wanted at most)\n");
    for (const auto& ratio : kRatios)
        std::printf("%-44s%8.2f   (%.1f)\n", ratio.pszWhat,
                    results.Time({ ratio.pszOurs }) / results.Time(ratio.others), ratio.wanted);
}

// The processor time of the quickest of a few turns, in milliseconds.
double LoadTime(int nWindows)
{
    const CString strText = LargeSkin(nWindows).c_str();
    double best = std::numeric_limits<double>::max();
    for (int nTurn = 0; nTurn < 5; nTurn++) {
        const std::clock_t start = std::clock();
        GuiSkin skin;
        skin.LoadFromString(strText, "");
        skin.Clear();
        best = std::min(best, static_cast<double>(std::clock() - start) * 1000 / CLOCKS_PER_SEC);
    }
    return best;
}

void PrintGrowth()
{
    std::printf("\nLoad and clear a skin of windows of 50 parts, in ms (wanted: a ratio below 2.3)\n");
    double before = 0;
    for (const int nWindows : { kWindows / 2, kWindows, 2 * kWindows }) {
        const double time = LoadTime(nWindows);
        std::printf("%8d windows%10.2f", nWindows, time);
        if (before > 0)
            std::printf("%8.2f", time / before);
        std::printf("\n");
        before = time;
    }
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    const OnePixel picture;
    Results results;
    constexpr size_t kRows = 12;
    if (benchmark::RunSpecifiedBenchmarks(&results) < kRows)
        return 0; // only some were asked for
    PrintRatios(results);
    PrintGrowth();
}
