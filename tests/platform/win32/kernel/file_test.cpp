#include "platform/win32/kernel/program_resources.h"
#include "tests/support/FailingFileSystem.h"
#include "tests/support/TestHome.h"

#include <windows.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <memory>
#include <span>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

HANDLE create(const std::string& path, DWORD access, DWORD disposition)
{
    return CreateFileA(path.c_str(), access, 0, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
}

BOOL write(HANDLE file, const std::string& text)
{
    DWORD written = 0;
    return WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
}

struct CloseFile {
    void operator()(HANDLE file) const { CloseHandle(file); }
};
using File = std::unique_ptr<void, CloseFile>;

class FileTest : public testing::Test {
protected:
    test::TempDir dir;
};

TEST_F(FileTest, OpensAsTheDispositionSays)
{
    const struct {
        const char* why;
        DWORD disposition;
        bool exists;
        DWORD error; // the last error afterwards
        bool opens;
        const char* text; // of the file afterwards, null: no file
    } kCases[] = {
        { "CREATE_NEW makes", CREATE_NEW, false, 0, true, "" },
        { "CREATE_NEW spares what is there", CREATE_NEW, true, ERROR_FILE_EXISTS, false, "old" },
        { "CREATE_ALWAYS makes", CREATE_ALWAYS, false, 0, true, "" },
        { "CREATE_ALWAYS empties", CREATE_ALWAYS, true, ERROR_ALREADY_EXISTS, true, "" },
        { "OPEN_EXISTING does not make", OPEN_EXISTING, false, ERROR_FILE_NOT_FOUND, false, nullptr },
        { "OPEN_EXISTING opens", OPEN_EXISTING, true, 0, true, "old" },
        { "OPEN_ALWAYS makes", OPEN_ALWAYS, false, 0, true, "" },
        { "OPEN_ALWAYS opens", OPEN_ALWAYS, true, ERROR_ALREADY_EXISTS, true, "old" },
        { "TRUNCATE_EXISTING does not make", TRUNCATE_EXISTING, false, ERROR_FILE_NOT_FOUND, false, nullptr },
        { "TRUNCATE_EXISTING empties", TRUNCATE_EXISTING, true, 0, true, "" },
        { "0 is no disposition", 0, true, ERROR_INVALID_PARAMETER, false, "old" },
        { "6 is no disposition", 6, true, ERROR_INVALID_PARAMETER, false, "old" },
    };
    const std::string path = dir / "file";
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        ::unlink(path.c_str());
        if (c.exists)
            test::write_file(path, "old");
        SetLastError(77);
        const HANDLE file = create(path, GENERIC_READ | GENERIC_WRITE, c.disposition);
        EXPECT_EQ(GetLastError(), c.error);
        EXPECT_EQ(file != INVALID_HANDLE_VALUE, c.opens);
        EXPECT_EQ(CloseHandle(file), c.opens);
        EXPECT_EQ(::access(path.c_str(), F_OK) == 0, c.text != nullptr);
        EXPECT_EQ(test::read_file(path), c.text ? c.text : "");
    }
}

TEST_F(FileTest, SaysWhyAPathCannotBeOpened)
{
    test::write_file(dir / "file", "x");
    ::mkdir((dir / "folder").c_str(), 0700);
    ::symlink("loop", (dir / "loop").c_str());
    const std::string base = dir.path().string();
    const struct {
        const char* why;
        std::string path;
        DWORD error;
    } kCases[] = {
        { "empty", "", ERROR_PATH_NOT_FOUND },
        { "missing folder", base + "\\none\\file", ERROR_PATH_NOT_FOUND },
        { "missing file", base + "\\folder\\none", ERROR_FILE_NOT_FOUND },
        { "file as a folder", base + "\\file\\x", ERROR_PATH_NOT_FOUND },
        { "folder as a file", base + "\\folder", ERROR_ACCESS_DENIED },
        { "a link to itself", base + "\\loop", ERROR_CANT_RESOLVE_FILENAME },
        { "260 bytes of a name", std::string(260, 'a'), ERROR_FILENAME_EXCED_RANGE },
        { "260 bytes of a path", "\\" + std::string(259, '/'), ERROR_FILENAME_EXCED_RANGE },
        { "259 bytes of a path", std::string(259, '/'), ERROR_ACCESS_DENIED },
        { "a drive is a name like any other", "Q:\\file", ERROR_PATH_NOT_FOUND },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        EXPECT_EQ(create(c.path, GENERIC_READ, OPEN_EXISTING), INVALID_HANDLE_VALUE);
        EXPECT_EQ(GetLastError(), c.error);
    }
    EXPECT_EQ(CreateFileA(nullptr, GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(CreateFileA("x", GENERIC_READ, 8, nullptr, OPEN_EXISTING, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER) << "8 is no share mode";
}

TEST_F(FileTest, TakesEveryByteOfANameButTheSeparators)
{
    // a Chinese name in UTF-8 before a separator, and one in code page 936 whose second byte is the separator's
    const std::string utf8 = "\xE5\xAE\x89";
    ASSERT_TRUE(CreateDirectoryA((dir.path().string() + "\\" + utf8).c_str(), nullptr));
    const File inside(create(dir.path().string() + "\\" + utf8 + "\\a b'\"*?", GENERIC_WRITE, CREATE_NEW));
    EXPECT_NE(inside.get(), INVALID_HANDLE_VALUE);
    EXPECT_EQ(::access((dir.path() / utf8 / "a b'\"*?").c_str(), F_OK), 0);

    ASSERT_TRUE(CreateDirectoryA((dir / "\xD5").c_str(), nullptr));
    const File trail(create(dir / "\xD5\x5C.txt", GENERIC_WRITE, CREATE_NEW));
    EXPECT_EQ(::access((dir / "\xD5/.txt").c_str(), F_OK), 0);
}

TEST_F(FileTest, ReadsWritesAndMovesAbout)
{
    const File file(create(dir / "file", GENERIC_READ | GENERIC_WRITE, CREATE_NEW));
    ASSERT_TRUE(write(file.get(), "0123456789"));
    DWORD high = 7;
    EXPECT_EQ(GetFileSize(file.get(), &high), 10u);
    EXPECT_EQ(high, 0u);

    char buffer[8] = {};
    DWORD count = 99;
    EXPECT_EQ(SetFilePointer(file.get(), -4, nullptr, FILE_END), 6u);
    EXPECT_TRUE(ReadFile(file.get(), buffer, 8, &count, nullptr));
    EXPECT_EQ(std::string(buffer, count), "6789") << "as much as there is";
    EXPECT_TRUE(ReadFile(file.get(), buffer, 8, &count, nullptr));
    EXPECT_EQ(count, 0u) << "the end of a file is no failure";
    EXPECT_EQ(SetFilePointer(file.get(), -7, nullptr, FILE_CURRENT), 3u);

    EXPECT_EQ(SetFilePointer(file.get(), -1, nullptr, FILE_BEGIN), INVALID_SET_FILE_POINTER);
    EXPECT_EQ(GetLastError(), ERROR_NEGATIVE_SEEK);
    EXPECT_EQ(SetFilePointer(file.get(), 0, nullptr, 3), INVALID_SET_FILE_POINTER);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);

    LONG distance_high = 1;
    EXPECT_EQ(SetFilePointer(file.get(), -1, &distance_high, FILE_BEGIN), 0xFFFFFFFF);
    EXPECT_EQ(GetLastError(), ERROR_SUCCESS) << "a position, not a failure";
    LARGE_INTEGER position{};
    EXPECT_TRUE(SetFilePointerEx(file.get(), { .QuadPart = -1 }, &position, FILE_CURRENT));
    EXPECT_EQ(position.QuadPart, 0x1FFFFFFFE);
    EXPECT_TRUE(FlushFileBuffers(file.get()));
}

TEST_F(FileTest, RefusesWhatTheHandleDoesNotAllow)
{
    test::write_file(dir / "file", "x");
    char byte = 0;
    DWORD count = 5;
    const File reader(create(dir / "file", GENERIC_READ, OPEN_EXISTING));
    EXPECT_FALSE(WriteFile(reader.get(), "y", 1, &count, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_EQ(count, 0u);
    const File writer(create(dir / "file", GENERIC_WRITE, OPEN_EXISTING));
    EXPECT_FALSE(ReadFile(writer.get(), &byte, 1, &count, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);

    const HANDLE closed = create(dir / "file", GENERIC_WRITE, OPEN_EXISTING);
    EXPECT_TRUE(CloseHandle(closed));
    const File event(CreateEventA(nullptr, TRUE, FALSE, nullptr)); // takes the place of the closed one
    EXPECT_FALSE(CloseHandle(closed)) << "closed once";
    for (const HANDLE handle : { INVALID_HANDLE_VALUE, HANDLE{}, closed, event.get() }) {
        count = 5;
        SetLastError(0);
        EXPECT_FALSE(WriteFile(handle, "y", 1, &count, nullptr));
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
        EXPECT_EQ(count, 0u);
        EXPECT_EQ(GetFileSize(handle, nullptr), INVALID_FILE_SIZE);
    }
    EXPECT_EQ(test::read_file(dir / "file"), "x");
}

TEST_F(FileTest, TellsAFullDiskFromSuccess)
{
    const std::string payload(std::size_t{ 1024 } * 1024, 'p');
    for (const std::size_t room : { std::size_t{ 0 }, std::size_t{ 1 }, payload.size() / 2, payload.size() - 1 }) {
        SCOPED_TRACE(room);
        const File file(create(dir / "file", GENERIC_WRITE, CREATE_ALWAYS));
        const test::WithFailingFileSystem files;
        files->fill_after(room);
        DWORD written = 1;
        EXPECT_FALSE(WriteFile(file.get(), payload.data(), static_cast<DWORD>(payload.size()), &written, nullptr));
        EXPECT_EQ(GetLastError(), ERROR_DISK_FULL);
        EXPECT_LE(written, room);
    }
    const File full(create("/dev/full", GENERIC_WRITE, OPEN_EXISTING));
    EXPECT_FALSE(write(full.get(), "x")) << "the system's own full disk";
    EXPECT_EQ(GetLastError(), ERROR_DISK_FULL);

    const test::WithFailingFileSystem files;
    files->fail_all(test::FileCall::sync, EIO);
    const File file(create(dir / "file", GENERIC_WRITE, CREATE_ALWAYS));
    EXPECT_FALSE(FlushFileBuffers(file.get()));
    EXPECT_EQ(GetLastError(), ERROR_IO_DEVICE);
}

TEST_F(FileTest, SurvivesTheLimitOnFileSizes)
{
    const std::string path = dir / "file";
    const struct rlimit limit = { 1000, 1000 }; // its signal is seen to by what ran before main
    EXPECT_EXIT(
        {
            ::setrlimit(RLIMIT_FSIZE, &limit);
            const BOOL wrote = write(create(path, GENERIC_WRITE, CREATE_NEW), std::string(5000, 'x'));
            std::fprintf(stderr, "wrote %d, error %u", wrote, GetLastError());
            ::_exit(0);
        },
        testing::ExitedWithCode(0), "wrote 0, error 223");
}

// Pages of files that are resident in this process now, in kilobytes.
long resident_file_pages()
{
    std::ifstream status("/proc/self/status");
    std::string word;
    long kilobytes = -1;
    while (status >> word && word != "RssFile:") {
    }
    status >> kilobytes;
    return kilobytes;
}

TEST_F(FileTest, WritesResourcesWithoutKeepingThemInMemory)
{
    constexpr std::size_t kSize = std::size_t{ 12 } * 1024 * 1024;
    test::write_file(dir / "resources", std::string(kSize, 'r'));
    const int descriptor = ::open((dir / "resources").c_str(), O_RDONLY | O_CLOEXEC);
    void* const mapped = ::mmap(nullptr, kSize, PROT_READ, MAP_PRIVATE, descriptor, 0);
    ASSERT_NE(mapped, MAP_FAILED);
    const win32::ProgramResources before =
        win32::exchange_program_resources({ { static_cast<const std::byte*>(mapped), kSize }, true });
    {
        const test::WithFailingFileSystem files;
        const long resident = resident_file_pages();
        long peak = resident;
        int pieces = 0;
        files->fault = [&](test::FileCall call) {
            pieces += call == test::FileCall::write;
            peak = std::max(peak, resident_file_pages());
            return 0;
        };
        const File file(create(dir / "target", GENERIC_WRITE, CREATE_NEW));
        DWORD written = 0;
        EXPECT_TRUE(WriteFile(file.get(), mapped, kSize, &written, nullptr));
        EXPECT_EQ(written, kSize);
        EXPECT_GT(pieces, 8);
        EXPECT_GT(resident, 0);
        EXPECT_LT(std::max(peak, resident_file_pages()) - resident, 4096);
    }
    win32::exchange_program_resources(before);
    ::munmap(mapped, kSize);
    ::close(descriptor);
    EXPECT_EQ(test::read_file(dir / "target"), std::string(kSize, 'r'));
}

TEST_F(FileTest, LeavesMemoryAloneThatIsNoFileMapping)
{
    const std::string whole(std::size_t{ 64 } * 1024, 'r');
    std::string bytes = whole;
    const win32::ProgramResources before =
        win32::exchange_program_resources({ std::as_bytes(std::span(bytes)), false });
    const File file(create(dir / "file", GENERIC_WRITE, CREATE_NEW));
    EXPECT_TRUE(write(file.get(), bytes));
    win32::exchange_program_resources(before);
    EXPECT_EQ(bytes, whole);
}

TEST_F(FileTest, DeletesFilesAndNothingElse)
{
    test::write_file(dir / "file", "x");
    ::mkdir((dir / "folder").c_str(), 0700);
    EXPECT_TRUE(DeleteFileA((dir / "file").c_str()));
    const struct {
        const char* name;
        DWORD error;
    } kCases[] = { { "file", ERROR_FILE_NOT_FOUND },
                   { "folder", ERROR_ACCESS_DENIED },
                   { "none\\file", ERROR_PATH_NOT_FOUND } };
    for (const auto& c : kCases) {
        EXPECT_FALSE(DeleteFileA((dir / c.name).c_str()));
        EXPECT_EQ(GetLastError(), c.error) << c.name;
    }
    EXPECT_EQ(::access((dir / "folder").c_str(), F_OK), 0);
}

} // namespace
