// Unpacks a cabinet of 333 files and 20 MB to a memory file system: our walk, without any pause, against cabextract.
// Both run as programs of their own, in turns, each into an empty folder; the time is from start to exit.
//
// Then once more as the installer paces it, to the disk of the current folder, against what the pauses alone take.
//
//   build/bench/bench/setupapi/bench_setupapi
#include "tests/support/PackedCabinet.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int kFiles = 333;
constexpr std::size_t kBytes = 20'000'000;
constexpr int kRuns = 25;

std::string place; // of the cabinet and the folders, on tmpfs
std::vector<double> times[2];

// Text of a limited vocabulary, which packs to about a third, as a program's files do.
std::string content(std::size_t size, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<std::string> words(2000);
    for (std::string& word : words) {
        for (std::size_t i = random() % 9 + 3; i > 0; i--)
            word += static_cast<char>(random() % 200 + 33);
    }
    std::string text;
    while (text.size() < size)
        text += words[random() % words.size()];
    text.resize(size);
    return text;
}

void make_cabinet(const std::string& path)
{
    std::vector<test::CabinetFile> files;
    files.reserve(kFiles);
    for (int i = 0; i < kFiles; i++) {
        files.push_back(
            { std::string("Tesk\\Folder").append(std::to_string(i % 12)).append("\\File").append(std::to_string(i)),
              content(kBytes / kFiles, static_cast<unsigned>(i)) });
    }
    std::ofstream(path, std::ios::binary) << test::packed_cabinet(files);
}

double seconds_of(const std::vector<std::string>& command)
{
    std::vector<char*> words;
    for (const std::string& word : command)
        words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    const auto start = std::chrono::steady_clock::now();
    pid_t child = 0;
    int status = -1;
    if (::posix_spawnp(&child, words[0], nullptr, nullptr, words.data(), environ) != 0 ||
        ::waitpid(child, &status, 0) != child || status != 0) {
        std::fprintf(stderr, "%s failed\n", words[0]);
        std::exit(1);
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::size_t bytes_in(const std::string& folder)
{
    std::size_t bytes = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        bytes += entry.is_regular_file() ? entry.file_size() : 0;
    return bytes;
}

void unpack(benchmark::State& state, bool ours)
{
    const std::string target = place + "/target", cabinet = place + "/cabinet";
    for (auto _ : state) {
        std::filesystem::remove_all(target);
        std::filesystem::create_directory(target);
        const double seconds = ours ? seconds_of({ UNPACK_PROGRAM, cabinet, target })
                                    : seconds_of({ "cabextract", "-q", "-d", target, cabinet });
        if (bytes_in(target) != kBytes / kFiles * kFiles)
            state.SkipWithError("not everything is there");
        state.SetIterationTime(seconds);
        times[ours ? 0 : 1].push_back(seconds);
    }
}

constexpr int kPauseMs = 20;

void unpack_paced(benchmark::State& state)
{
    const std::string target = std::filesystem::absolute("bench-paced").string();
    for (auto _ : state) {
        std::filesystem::remove_all(target);
        std::filesystem::create_directory(target);
        struct rusage before {
        }, after{};
        ::getrusage(RUSAGE_CHILDREN, &before);
        const double seconds = seconds_of({ UNPACK_PROGRAM, place + "/cabinet", target, std::to_string(kPauseMs) });
        ::getrusage(RUSAGE_CHILDREN, &after);
        const auto cpu = [](const struct rusage& use) {
            return static_cast<double>(use.ru_utime.tv_sec + use.ru_stime.tv_sec) +
                   static_cast<double>(use.ru_utime.tv_usec + use.ru_stime.tv_usec) / 1e6;
        };
        state.SetIterationTime(seconds);
        state.counters["over_the_pauses_%"] = (seconds / (kFiles * kPauseMs / 1e3) - 1) * 100;
        state.counters["cpu_s"] = cpu(after) - cpu(before);
    }
    std::filesystem::remove_all(target);
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char** argv)
{
    std::string pattern = "/dev/shm/bench-setupapi-XXXXXX";
    if (!::mkdtemp(pattern.data())) {
        std::perror(pattern.c_str());
        return 1;
    }
    place = pattern;
    make_cabinet(place + "/cabinet");
    std::printf("%d files, %zu bytes, packed %ju\n", kFiles, kBytes / kFiles * kFiles,
                static_cast<std::uintmax_t>(std::filesystem::file_size(place + "/cabinet")));

    char in_turns[] = "--benchmark_enable_random_interleaving=true";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, in_turns);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    for (const bool ours : { true, false }) {
        benchmark::RegisterBenchmark(ours ? "SetupIterateCabinetA" : "cabextract",
                                     [ours](benchmark::State& state) { unpack(state, ours); })
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond)
            ->Iterations(1)
            ->Repetitions(kRuns)
            ->DisplayAggregatesOnly();
    }
    benchmark::RegisterBenchmark("SetupIterateCabinetA/paced", unpack_paced)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(1);
    benchmark::RunSpecifiedBenchmarks();
    std::filesystem::remove_all(place);
    if (!times[0].empty() && !times[1].empty())
        std::printf("ratio of the medians, ours to cabextract: %.2f\n", median(times[0]) / median(times[1]));
    return 0;
}
