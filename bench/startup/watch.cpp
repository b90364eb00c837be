// Measures from exec to the first picture. Starts each program in turn, many times, on the X server of DISPLAY, and
// waits for the marker pixel to appear on the root window, woken by the server's damage reports. When the screen has
// been quiet for a moment it reads the program's peak memory and processor time, and ends it.
//
//   watch RUNS SHEET.bmp NAME COMMAND [NAME COMMAND...]     a COMMAND's words are separated by blanks
//
// Prints a row a program: the time's median, least and most, its ratio to the first program's, processor time and peak
// memory (both medians). Exit code 1 when a program shows nothing.
#include "picture.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <string>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/damage.h>
#include <xcb/xcb.h>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::chrono::seconds kDeadline{ 20 };
constexpr int kQuiet = 60; // milliseconds without any drawing: the program rests

struct Sample {
    double first_picture = 0; // milliseconds
    double processor = 0;     // milliseconds, until it rests
    double peak_memory = 0;   // MB
};

struct Program {
    std::string name;
    std::vector<std::string> command;
    std::vector<Sample> samples;
};

[[noreturn]] void give_up(const std::string& what)
{
    std::fprintf(stderr, "watch: %s\n", what.c_str());
    std::exit(1);
}

class Root {
public:
    Root() : connection_(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(connection_) != 0)
            give_up("no X server at DISPLAY");
        root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
        const xcb_query_extension_reply_t* damage = xcb_get_extension_data(connection_, &xcb_damage_id);
        if (!damage->present)
            give_up("the X server reports no damage");
        std::free(xcb_damage_query_version_reply(connection_, xcb_damage_query_version(connection_, 1, 1), nullptr));
        damage_ = xcb_generate_id(connection_);
        xcb_damage_create(connection_, damage_, root_, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
        xcb_flush(connection_);
    }
    ~Root() { xcb_disconnect(connection_); }
    Root(const Root&) = delete;
    Root& operator=(const Root&) = delete;

    std::uint32_t marker() const
    {
        const auto cookie = xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, root_, kPageLeft + kMarkerX,
                                          kPageTop + kMarkerY, 1, 1, ~0U);
        xcb_get_image_reply_t* reply = xcb_get_image_reply(connection_, cookie, nullptr);
        if (!reply)
            give_up("the X server is gone");
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, xcb_get_image_data(reply), sizeof pixel);
        std::free(reply);
        return pixel & 0x00FFFFFF;
    }

    // False when nothing was drawn for that long.
    bool wait_for_drawing(int milliseconds)
    {
        bool drawn = false;
        while (xcb_generic_event_t* event = xcb_poll_for_event(connection_)) {
            std::free(event);
            drawn = true;
        }
        pollfd fd{ xcb_get_file_descriptor(connection_), POLLIN, 0 };
        if (!drawn && ::poll(&fd, 1, milliseconds) != 1)
            return false;
        while (xcb_generic_event_t* event = xcb_poll_for_event(connection_))
            std::free(event);
        xcb_damage_subtract(connection_, damage_, XCB_NONE, XCB_NONE); // before looking: later drawing wakes us again
        xcb_flush(connection_);
        return true;
    }

    template <class Condition>
    void wait_until(Condition condition, const std::string& what)
    {
        const auto end = Clock::now() + kDeadline;
        while (!condition(marker())) {
            if (Clock::now() > end)
                give_up(what);
            wait_for_drawing(kQuiet);
        }
    }

private:
    xcb_connection_t* connection_;
    xcb_window_t root_ = 0;
    xcb_damage_damage_t damage_ = 0;
};

double peak_memory_of(pid_t process)
{
    const std::string path = "/proc/" + std::to_string(process) + "/status";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "re"), std::fclose);
    char line[256];
    while (file && std::fgets(line, sizeof line, file.get())) {
        if (std::strncmp(line, "VmHWM:", 6) == 0)
            return std::strtod(line + 6, nullptr) / 1024;
    }
    give_up("a program ended by itself");
}

pid_t start(const Program& program)
{
    std::vector<char*> arguments;
    for (const std::string& word : program.command)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t process = 0;
    if (::posix_spawnp(&process, arguments[0], &actions, nullptr, arguments.data(), environ) != 0)
        give_up("cannot start " + program.command[0]);
    ::posix_spawn_file_actions_destroy(&actions);
    return process;
}

Sample measure(Root& root, const Program& program, std::uint32_t marker)
{
    Sample sample;
    root.wait_until([&](std::uint32_t pixel) { return pixel != marker; }, "the marker is on the screen already");
    const auto begin = Clock::now();
    const pid_t process = start(program);
    root.wait_until([&](std::uint32_t pixel) { return pixel == marker; }, program.name + " shows nothing");
    sample.first_picture = Milliseconds(Clock::now() - begin).count();
    while (root.wait_for_drawing(kQuiet)) {
    }
    sample.peak_memory = peak_memory_of(process);
    ::kill(process, SIGKILL);
    rusage usage{};
    ::wait4(process, nullptr, 0, &usage);
    const auto milliseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    sample.processor = milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
    return sample;
}

double ranked(const Program& program, double Sample::*field, double rank)
{
    std::vector<double> values;
    for (const Sample& sample : program.samples)
        values.push_back(sample.*field);
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(rank * static_cast<double>(values.size() - 1))];
}

void print(const std::vector<Program>& programs)
{
    const double base = ranked(programs.front(), &Sample::first_picture, 0.5);
    const double base_memory = ranked(programs.front(), &Sample::peak_memory, 0.5);
    std::printf("%-22s %24s %6s %8s %8s %6s\n", "program", "first picture ms", "ratio", "CPU ms", "peak MB", "ratio");
    for (const Program& program : programs) {
        const double median = ranked(program, &Sample::first_picture, 0.5);
        const double memory = ranked(program, &Sample::peak_memory, 0.5);
        std::printf("%-22s %8.1f (%5.1f..%6.1f) %6.2f %8.1f %8.1f %6.2f\n", program.name.c_str(), median,
                    ranked(program, &Sample::first_picture, 0), ranked(program, &Sample::first_picture, 1),
                    median / base, ranked(program, &Sample::processor, 0.5), memory, memory / base_memory);
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 5 || argc % 2 == 0)
        give_up("usage: watch RUNS SHEET.bmp NAME COMMAND [NAME COMMAND...]");
    const int runs = std::max(1, std::atoi(argv[1]));
    const std::uint32_t marker = page_pixel(argv[2], kMarkerX, kMarkerY);
    std::vector<Program> programs;
    for (int i = 3; i + 1 < argc; i += 2) {
        Program program{ argv[i], {}, {} };
        std::istringstream words(argv[i + 1]);
        for (std::string word; words >> word;)
            program.command.push_back(word);
        programs.push_back(std::move(program));
    }

    Root root;
    for (Program& program : programs)
        (void)measure(root, program, marker); // once for the page cache
    for (int run = 0; run < runs; run++) {
        for (Program& program : programs)
            program.samples.push_back(measure(root, program, marker));
    }
    print(programs);
}
