// The first text of a process, and twenty characters over and over: measured and drawn.
#include "Peers.h"

#include <benchmark/benchmark.h>

#include <QFontMetrics>
#include <QGuiApplication>

#include <chrono>
#include <cstring>

#include <sys/wait.h>
#include <unistd.h>

#include <pango/pangocairo.h>

namespace {

constexpr const char* kLatin = "Installing file 0123";
// Twenty Chinese characters, in code page 936 and in UTF-8.
constexpr const char* kChineseBytes =
    "\xD5\xFD\xD4\xDA\xB0\xB2\xD7\xB0\xC7\xEB\xC9\xD4\xBA\xF2\xD6\xD0\xB9\xFA\xC8\xCB"
    "\xD5\xFD\xD4\xDA\xB0\xB2\xD7\xB0\xC7\xEB\xC9\xD4\xBA\xF2\xD6\xD0\xB9\xFA\xC8\xCB";
constexpr const char* kChineseUtf8 = "正在安装请稍候中国人正在安装请稍候中国人";

struct Text {
    const char* bytes;
    const char* utf8;
    const char* face;
    const char* family;
};
constexpr Text kLatinText = { kLatin, kLatin, "Tahoma", "DejaVu Sans" };
constexpr Text kChineseText = { kChineseBytes, kChineseUtf8, "SimSun", "WenQuanYi Zen Hei" };

// Draws one text in a child process that has drawn none, and takes the time that takes there. The rows of first texts
// come before all others, so that this process has not drawn any either.
void FirstText(benchmark::State& state, void (*draw)(const Text& text))
{
    for (auto _ : state) {
        int pipe_ends[2];
        if (::pipe(pipe_ends) != 0)
            return;
        const pid_t child = ::fork();
        if (child == 0) {
            const auto start = std::chrono::steady_clock::now();
            draw(kChineseText);
            const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
            const double seconds = taken.count();
            ::_exit(::write(pipe_ends[1], &seconds, sizeof seconds) == sizeof seconds ? 0 : 1);
        }
        ::close(pipe_ends[1]);
        double seconds = 0;
        if (::read(pipe_ends[0], &seconds, sizeof seconds) != sizeof seconds)
            state.SkipWithError("the child drew nothing");
        ::close(pipe_ends[0]);
        ::waitpid(child, nullptr, 0);
        state.SetIterationTime(seconds);
    }
}

void DrawOurs(const Text& text)
{
    const bench::Ours target(510, 349);
    const HFONT font = CreateFontA(-13, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, text.face);
    const HGDIOBJ previous = SelectObject(target.dc(), font);
    TextOutA(target.dc(), 10, 10, text.bytes, static_cast<int>(std::strlen(text.bytes)));
    SelectObject(target.dc(), previous);
    DeleteObject(font);
}

void DrawPangoCairo(const Text& text)
{
    bench::Theirs target(510, 349);
    cairo_t* context = cairo_create(target.cairo());
    PangoLayout* layout = pango_cairo_create_layout(context);
    PangoFontDescription* description = pango_font_description_new();
    pango_font_description_set_family(description, text.family);
    pango_font_description_set_absolute_size(description, 13.0 * PANGO_SCALE);
    pango_layout_set_font_description(layout, description);
    pango_layout_set_text(layout, text.utf8, -1);
    cairo_move_to(context, 10, 10);
    pango_cairo_show_layout(context, layout);
}

void StartQt()
{
    static int argc = 3;
    static char name[] = "bench";
    static char option[] = "-platform";
    static char platform[] = "offscreen";
    static char* argv[] = { name, option, platform, nullptr };
    static QGuiApplication application(argc, argv);
}

void DrawQt(const Text& text)
{
    StartQt();
    bench::Theirs target(510, 349);
    QPainter painter(&target.qt());
    QFont font(QString::fromUtf8(text.family));
    font.setPixelSize(13);
    painter.setFont(font);
    painter.drawText(10, 24, QString::fromUtf8(text.utf8));
}
BENCHMARK_CAPTURE(FirstText, ours, DrawOurs)->Name("first_text/ours")->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(FirstText, pangocairo, DrawPangoCairo)
    ->Name("first_text/pangocairo")
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(FirstText, qt5, DrawQt)->Name("first_text/qt5")->UseManualTime()->Unit(benchmark::kMicrosecond);

void BM_TextOurs(benchmark::State& state, const Text& text)
{
    const bench::Ours target(510, 349);
    const HFONT font = CreateFontA(-13, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, text.face);
    const HGDIOBJ previous = SelectObject(target.dc(), font);
    SetBkMode(target.dc(), TRANSPARENT);
    const auto length = static_cast<int>(std::strlen(text.bytes));
    for (auto _ : state) {
        SIZE size;
        GetTextExtentPoint32A(target.dc(), text.bytes, length, &size);
        TextOutA(target.dc(), 10, 10, text.bytes, length);
    }
    SelectObject(target.dc(), previous);
    DeleteObject(font);
}
BENCHMARK_CAPTURE(BM_TextOurs, latin, kLatinText)->Name("text_latin/ours");
BENCHMARK_CAPTURE(BM_TextOurs, chinese, kChineseText)->Name("text_chinese/ours");

void BM_TextPangoCairo(benchmark::State& state, const Text& text)
{
    bench::Theirs target(510, 349);
    cairo_t* context = cairo_create(target.cairo());
    PangoLayout* layout = pango_cairo_create_layout(context);
    PangoFontDescription* description = pango_font_description_new();
    pango_font_description_set_family(description, text.family);
    pango_font_description_set_absolute_size(description, 13.0 * PANGO_SCALE);
    pango_layout_set_font_description(layout, description);
    for (auto _ : state) {
        int width = 0;
        int height = 0;
        pango_layout_set_text(layout, text.utf8, -1);
        pango_layout_get_pixel_size(layout, &width, &height);
        cairo_move_to(context, 10, 10);
        pango_cairo_show_layout(context, layout);
    }
    pango_font_description_free(description);
    g_object_unref(layout);
    cairo_destroy(context);
}
BENCHMARK_CAPTURE(BM_TextPangoCairo, latin, kLatinText)->Name("text_latin/pangocairo");
BENCHMARK_CAPTURE(BM_TextPangoCairo, chinese, kChineseText)->Name("text_chinese/pangocairo");

void BM_TextQt(benchmark::State& state, const Text& text)
{
    StartQt();
    bench::Theirs target(510, 349);
    QPainter painter(&target.qt());
    QFont font(QString::fromUtf8(text.family));
    font.setPixelSize(13);
    painter.setFont(font);
    const QString string = QString::fromUtf8(text.utf8);
    for (auto _ : state) {
        benchmark::DoNotOptimize(painter.fontMetrics().horizontalAdvance(string));
        painter.drawText(10, 24, string);
    }
}
BENCHMARK_CAPTURE(BM_TextQt, latin, kLatinText)->Name("text_latin/qt5");
BENCHMARK_CAPTURE(BM_TextQt, chinese, kChineseText)->Name("text_chinese/qt5");

} // namespace
