#include "platform/win32/kernel/process_begin.h"
#include "platform/win32/kernel/process_end.h"
#include "tests/support/TestHome.h"

#include <windows.h>

#include <cstdio>
#include <fstream>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

struct Witness {
    ~Witness() { std::fputs("a static object was destroyed; ", stderr); }
};

TEST(ProcessBegin, LetsNothingOfOursBecomeAStandardDescriptor)
{
    EXPECT_EXIT(
        {
            ::close(STDIN_FILENO);
            ::close(STDERR_FILENO);
            win32::prepare_process();
            ::_exit(::open("/dev/zero", O_RDONLY) > STDERR_FILENO && ::write(STDERR_FILENO, "x", 1) == 1 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

// Makes temporaries and renames them, for ever, so that the end of the process comes at any moment of it.
DWORD WINAPI leave_temporaries(LPVOID parameter)
{
    const auto& dir = *static_cast<const test::TempDir*>(parameter);
    const std::string path = dir / ("temporary" + std::to_string(GetCurrentThreadId())).c_str();
    for (;;) {
        win32::AtProcessEnd promise;
        {
            const win32::ProcessEndHold hold;
            std::ofstream(path) << "half";
            Sleep(3); // the end of the process is asked for meanwhile
            promise = win32::at_process_end([path] { ::unlink(path.c_str()); });
        }
        const win32::ProcessEndHold hold;
        const win32::ProcessEndHold within;
        ::rename(path.c_str(), (dir / "whole").c_str());
        promise.give_back();
    }
}

TEST(ProcessEnd, RunsWhatIsPromisedAndNothingElse)
{
    EXPECT_EXIT(
        {
            static const Witness witness;
            const auto first = win32::at_process_end([] { std::fputs("first ", stderr); });
            auto moved = win32::at_process_end([] { std::fputs("second ", stderr); });
            const auto second = std::move(moved);
            {
                const auto given_back = win32::at_process_end([] { std::fputs("given back ", stderr); });
            }
            std::fputs("buffered", stdout);
            ExitProcess(7);
        },
        testing::ExitedWithCode(7), "^second first $");
}

TEST(ProcessEnd, FlushesStandardOutput)
{
    const test::TempDir dir;
    const std::string path = dir / "out";
    EXPECT_EXIT(
        {
            (void)!std::freopen(path.c_str(), "w", stdout);
            std::fputs("buffered", stdout);
            ExitProcess(0);
        },
        testing::ExitedWithCode(0), "");
    EXPECT_EQ(test::read_file(path), "buffered");
}

TEST(ProcessEnd, LeavesNoTemporaryOfAThreadAtWork)
{
    for (int round = 0; round < 8; round++) {
        test::TempDir dir;
        EXPECT_EXIT(
            {
                CreateThread(nullptr, 0, leave_temporaries, &dir, 0, nullptr);
                CreateThread(nullptr, 0, leave_temporaries, &dir, 0, nullptr);
                while (::access((dir / "whole").c_str(), F_OK) != 0)
                    Sleep(0);
                ExitProcess(0);
            },
            testing::ExitedWithCode(0), "");
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), {}), 1) << "a temporary is left";
    }
}

} // namespace
