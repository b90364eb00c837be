// The install job from the click to the last page, on a real disk (TMPDIR), beside 333 pauses of 20 ms and nothing
// else: what is above those is what unpacking, flushing, painting, the registry and the configuration program cost.
#include "tests/setup/InstallerOnScreen.h"
#include "tests/support/TestHome.h"

#include <benchmark/benchmark.h>

#include <fstream>
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

} // namespace

int main(int argc, char** argv)
{
    test::use_home(test::home().path());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
