// The install job from the click to the last page, on a real disk (TMPDIR), beside 333 pauses of 20 ms and nothing
// else: what is above those is what unpacking, flushing, painting, the registry and the configuration program cost. And
// each page drawn anew, beside a memcpy of the window's pixels.
#include "tests/setup/InstallerOnScreen.h"
#include "tests/support/TestHome.h"

#include "assets/Payload.h"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include <sys/resource.h>

namespace {

// Kilobytes of the process's peak; Google Benchmark's own are among them.
double PeakMemory()
{
    struct rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss);
}

void InstallJob(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        {
            const test::FreshHome home;
            test::InstallerOnScreen installer;
            installer.Tick();
            state.ResumeTiming();
            installer.Click(test::kInstallButton);
            MSG msg;
            while (installer.Stage() != kStageFinished && GetMessageA(&msg, nullptr, 0, 0))
                DispatchMessageA(&msg);
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.counters["peak_kB"] = PeakMemory();
}
BENCHMARK(InstallJob)
    ->Iterations(1)
    ->Repetitions(3)
    ->MeasureProcessCPUTime()
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

void PaceAlone(benchmark::State& state)
{
    for (auto _ : state) {
        for (int i = 0; i < 333; i++)
            Sleep(20);
    }
}
BENCHMARK(PaceAlone)->Iterations(1)->Repetitions(3)->MeasureProcessCPUTime()->UseRealTime()->Unit(
    benchmark::kMillisecond);

// A window at one of its pages, with half a bar where there is one.
class AtPage {
public:
    explicit AtPage(benchmark::State& state)
    {
        m_installer.ShowStage(static_cast<int>(state.range(0)));
        if (state.range(0) == kStageInstalling)
            m_installer.ReportFile("Tesk\\Data\\Config.xml", kPayloadBytes / 2);
    }
    HWND Window() const { return m_installer.Window(); }

private:
    const test::FreshHome m_home;
    test::InstallerOnScreen m_installer;
};

// The window's own drawing of a page.
void PagePaint(benchmark::State& state)
{
    const AtPage page(state);
    auto* const pWindow = static_cast<MeravSetupWnd*>(CWnd::FromHandle(page.Window()));
    CDC dc;
    CBitmap bmp;
    dc.CreateCompatibleDC(nullptr);
    bmp.CreateBitmap(510, 349, 1, 32, nullptr);
    CBitmap* const pOld = dc.SelectObject(&bmp);
    for (auto _ : state)
        pWindow->Paint(&dc, CRect(0, 0, 510, 349));
    dc.SelectObject(pOld);
}
BENCHMARK(PagePaint)->DenseRange(kStageChecking, kStageFinished)->Unit(benchmark::kMicrosecond);

// From the invalid window to the screen. The page is copied three times on the way: to the buffer that the skin library
// draws on, to the window, and by the screen in memory to its picture, which is the slowest of all.
void PageToScreen(benchmark::State& state)
{
    const AtPage page(state);
    for (auto _ : state) {
        InvalidateRect(page.Window(), nullptr, FALSE);
        UpdateWindow(page.Window());
    }
}
BENCHMARK(PageToScreen)->DenseRange(kStageChecking, kStageFinished)->Unit(benchmark::kMicrosecond);

// As many bytes as the window has.
void WindowMemcpy(benchmark::State& state)
{
    constexpr std::size_t kPixels = std::size_t{ 510 } * 349;
    const std::vector<std::uint32_t> source(kPixels, 1);
    std::vector<std::uint32_t> destination(kPixels, 2);
    for (auto _ : state) {
        std::memcpy(destination.data(), source.data(), kPixels * sizeof(std::uint32_t));
        benchmark::DoNotOptimize(destination.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(WindowMemcpy)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv)
{
    test::use_home(test::home().path());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
