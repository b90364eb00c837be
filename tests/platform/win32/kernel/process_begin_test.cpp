#include "platform/win32/kernel/process_begin.h"

#include <csignal>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

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

TEST(ProcessBegin, SurvivesALimitOnTheSizeOfFiles)
{
    EXPECT_EXIT( // by what ran before main alone
        {
            rlimit small{};
            small.rlim_cur = small.rlim_max = 4096;
            ::setrlimit(RLIMIT_FSIZE, &small);
            ::_exit(::ftruncate(::memfd_create("large", 0), 8192) == -1 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
