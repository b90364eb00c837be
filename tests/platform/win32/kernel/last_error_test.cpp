#include "platform/win32/kernel/last_error.h"

#include <windows.h>

#include <cerrno>
#include <thread>

#include <gtest/gtest.h>

namespace {

TEST(LastError, TakesTheDocumentedNumberForErrno)
{
    const struct {
        int error;
        DWORD number;
    } kCases[] = {
        { ENOENT, 2 },   { ENOTDIR, 3 },  { EMFILE, 4 },   { EACCES, 5 }, { EPERM, 5 },     { EISDIR, 5 },
        { EBADF, 6 },    { ENOMEM, 8 },   { EXDEV, 17 },   { EROFS, 19 }, { ETXTBSY, 32 },  { EINVAL, 87 },
        { ENOSPC, 112 }, { EDQUOT, 112 }, { EEXIST, 183 }, { EIO, 1117 }, { ENOEXEC, 193 }, { ENOTEMPTY, 145 },
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(win32::error_from_errno(c.error), c.number) << c.error;
        EXPECT_EQ(win32::error_from_errno(-c.error), c.number) << c.error;
    }
    EXPECT_EQ(win32::error_from_errno(123456), ERROR_GEN_FAILURE) << "an errno nobody knows is still a failure";
}

TEST(LastError, BelongsToItsThread)
{
    SetLastError(112);
    DWORD seen = 1;
    std::thread([&seen] {
        seen = GetLastError();
        SetLastError(5);
    }).join();
    EXPECT_EQ(seen, 0u);
    EXPECT_EQ(GetLastError(), 112u);
}

} // namespace
