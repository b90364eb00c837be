#include "tests/support/TestHome.h"
#include "tests/support/WaitUntil.h"

#include <shellapi.h>

#include <csignal>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Whether a child of ours has ended and waits for somebody to ask after it.
bool has_zombie()
{
    siginfo_t info{};
    return ::waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid != 0;
}

class ShellExecuteTest : public testing::Test {
protected:
    // A program of the tests: a script that names its interpreter.
    std::string program(const char* name, const std::string& lines, mode_t mode = 0755) const
    {
        std::string path = dir / name;
        test::write_file(path, lines);
        ::chmod(path.c_str(), mode);
        return path;
    }

    struct Started {
        BOOL ok = FALSE;
        DWORD error = 0;
        std::uintptr_t instance = 0;
        HANDLE process = nullptr;
    };

    Started start(const std::string& file, ULONG mask = SEE_MASK_NOCLOSEPROCESS, LPCSTR parameters = nullptr,
                  LPCSTR directory = nullptr, LPCSTR verb = nullptr)
    {
        SHELLEXECUTEINFOA info{};
        info.cbSize = sizeof info;
        info.fMask = mask;
        info.lpVerb = verb;
        info.lpFile = file.c_str();
        info.lpParameters = parameters;
        info.lpDirectory = directory;
        SetLastError(0);
        const BOOL ok = ShellExecuteExA(&info);
        handles.push_back(info.hProcess);
        return { ok, GetLastError(), reinterpret_cast<std::uintptr_t>(info.hInstApp), info.hProcess };
    }

    // Waits for its end.
    static void await(const Started& started)
    {
        ASSERT_TRUE(started.ok);
        ASSERT_EQ(WaitForSingleObject(started.process, 20000), WAIT_OBJECT_0);
    }

    static DWORD exit_code(HANDLE process)
    {
        DWORD code = 0;
        EXPECT_TRUE(GetExitCodeProcess(process, &code));
        return code;
    }

    ~ShellExecuteTest() override
    {
        for (const HANDLE handle : handles) {
            TerminateProcess(handle, 0);
            WaitForSingleObject(handle, 20000);
            CloseHandle(handle);
        }
    }

    const test::TempDir dir;
    std::vector<HANDLE> handles;
};

TEST_F(ShellExecuteTest, WaitsForTheEndAndTellsHowItCame)
{
    const struct {
        const char* why;
        const char* lines;
        DWORD code;
    } kCases[] = {
        { "ends well", "#!/bin/sh\nexit 0\n", 0 },
        { "ends with a code", "#!/bin/sh\nexit 7\n", 7 },
        { "crashes", "#!/bin/sh\nkill -SEGV $$\n", 128 + SIGSEGV },
        { "is killed", "#!/bin/sh\nkill -KILL $$\n", 128 + SIGKILL },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        const Started started = start(program("prog", c.lines));
        EXPECT_GT(started.instance, 32u);
        await(started);
        EXPECT_EQ(exit_code(started.process), c.code);
    }
}

TEST_F(ShellExecuteTest, LeavesAHangingProgramRunning)
{
    const Started started = start(program("hang", "#!/bin/sh\nexec sleep 1000\n"));
    ASSERT_TRUE(started.ok);
    EXPECT_EQ(WaitForSingleObject(started.process, 50), WAIT_TIMEOUT);
    EXPECT_EQ(exit_code(started.process), STILL_ACTIVE);
    EXPECT_TRUE(TerminateProcess(started.process, 5));
    await(started);
    EXPECT_EQ(exit_code(started.process), 5u);
    EXPECT_FALSE(TerminateProcess(started.process, 6)) << "it has ended";
    EXPECT_EQ(exit_code(started.process), 5u);
}

TEST_F(ShellExecuteTest, SaysWhyAProgramCannotRun)
{
    ::mkdir((dir / "folder").c_str(), 0700);
    const std::string base = dir.path().string();
    const std::string trap = "touch '" + base + "/shell-ran'\n";
    program("plain", "#!/bin/sh\n" + trap, 0644);
    program("text", trap);
    program("empty", "");
    program("orphan", "#!/nonexistent/interpreter\n" + trap);
    program("truncated", "\x7f"
                         "ELF");
    const struct {
        const char* why;
        std::string file;
        DWORD error;
        std::uintptr_t instance;
    } kCases[] = {
        { "missing", base + "\\none", ERROR_FILE_NOT_FOUND, SE_ERR_FNF },
        { "missing folder", base + "\\none\\none", ERROR_PATH_NOT_FOUND, SE_ERR_PNF },
        { "no path is searched", "true", ERROR_FILE_NOT_FOUND, SE_ERR_FNF },
        { "not executable", base + "\\plain", ERROR_ACCESS_DENIED, SE_ERR_ACCESSDENIED },
        { "a folder", base + "\\folder", ERROR_ACCESS_DENIED, SE_ERR_ACCESSDENIED },
        { "text, and never a shell for it", base + "\\text", ERROR_BAD_EXE_FORMAT, ERROR_BAD_FORMAT },
        { "nothing in it", base + "\\empty", ERROR_BAD_EXE_FORMAT, ERROR_BAD_FORMAT },
        { "cut off", base + "\\truncated", ERROR_BAD_EXE_FORMAT, ERROR_BAD_FORMAT },
        { "its interpreter is missing", base + "\\orphan", ERROR_FILE_NOT_FOUND, SE_ERR_FNF },
        { "no name", "", ERROR_PATH_NOT_FOUND, SE_ERR_PNF },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.why);
        const Started started = start(c.file);
        EXPECT_FALSE(started.ok);
        EXPECT_EQ(started.error, c.error);
        EXPECT_EQ(started.instance, c.instance);
        EXPECT_EQ(started.process, nullptr);
    }
    EXPECT_NE(::access((base + "/shell-ran").c_str(), F_OK), 0);
    EXPECT_FALSE(has_zombie());

    EXPECT_EQ(start(base + "/text", 0, nullptr, nullptr, "print").error, ERROR_NO_ASSOCIATION);
    EXPECT_EQ(start("/bin/true", 0, nullptr, (base + "/none").c_str()).error, ERROR_DIRECTORY);
    SHELLEXECUTEINFOA info{}; // its size is not filled in
    EXPECT_FALSE(ShellExecuteExA(&info));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST_F(ShellExecuteTest, GivesTheProgramASessionAndNothingOfOurs)
{
    const int ours = ::open((dir / "ours").c_str(), O_CREAT | O_RDWR, 0600); // would stay open over an exec
    const int input = ::dup(STDIN_FILENO);
    ::dup2(ours, STDIN_FILENO);
    ::signal(SIGHUP, SIG_IGN);
    sigset_t usr1, before;
    ::sigemptyset(&usr1);
    ::sigaddset(&usr1, SIGUSR1);
    ::pthread_sigmask(SIG_BLOCK, &usr1, &before);
    const Started started = start(program("look", "#!/bin/sh\ncd \"${0%/*}\"\n"
                                                  "for fd in /proc/$$/fd/*; do readlink $fd; done > fds\n"
                                                  "cut -d' ' -f6 /proc/$$/stat > session\necho $$ >> session\n"
                                                  "exec grep -E 'Sig(Blk|Ign)' /proc/self/status > signals\n"));
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    ::signal(SIGHUP, SIG_DFL);
    ::dup2(input, STDIN_FILENO);
    ::close(input);
    ::close(ours);
    await(started);

    const std::string session = test::read_file(dir / "session");
    EXPECT_EQ(session, session.substr(0, session.size() / 2) + session.substr(0, session.size() / 2))
        << "it leads a session of its own";
    std::istringstream signals(test::read_file(dir / "signals"));
    std::string label;
    std::uint64_t blocked = 1, ignored = 1;
    signals >> label >> std::hex >> blocked >> label >> ignored;
    constexpr std::uint64_t kThreadLibrarys = 0x180000000; // signals 32 and 33, which no program may use
    EXPECT_EQ(blocked, 0u);
    EXPECT_EQ(ignored & ~kThreadLibrarys, 0u);
    EXPECT_EQ(test::read_file(dir / "fds").find("ours"), std::string::npos) << test::read_file(dir / "fds");
    EXPECT_EQ(test::read_file(dir / "fds").find("/dev/null\n"), 0u) << "standard input";
}

TEST_F(ShellExecuteTest, PassesParametersFolderAndEnvironment)
{
    const std::string path = program("show", "#!/bin/sh\npwd > here\nfor a; do echo \"[$a]\"; done >> here\n"
                                             "echo \"$SHOWN\" >> here\n");
    ::mkdir((dir / "folder").c_str(), 0700);
    ::setenv("SHOWN", "yes", 1);
    ASSERT_TRUE(SetCurrentDirectoryA(dir.path().c_str()));
    const Started started = start("show", SEE_MASK_NOCLOSEPROCESS, " one \"two three\"\t\"\" fo\"u r\" ",
                                  (dir.path().string() + "\\folder").c_str(), "Open");
    SetCurrentDirectoryA("/");
    await(started);
    EXPECT_EQ(test::read_file(dir / "folder/here"), (dir / "folder") + "\n[one]\n[two three]\n[]\n[fou r]\nyes\n");
}

TEST_F(ShellExecuteTest, LeavesNoZombieWhenNobodyAsks)
{
    const std::string path = program("touch", "#!/bin/sh\necho done >> \"$0.log\"\n");
    EXPECT_EQ(start(path, 0).process, nullptr) << "no handle was asked for";
    const Started unclosed = start(path);
    EXPECT_NE(unclosed.process, nullptr);
    const Started closed = start(path);
    EXPECT_TRUE(CloseHandle(closed.process));
    EXPECT_TRUE(test::wait_until([&] { return test::read_file(path + ".log") == "done\ndone\ndone\n"; }));
    EXPECT_TRUE(test::wait_until([] { return !has_zombie(); }));
}

// Whoever started us may have told the system to keep no exit statuses; the end itself is still seen.
TEST_F(ShellExecuteTest, SeesTheEndOfAProgramWhoseStatusIsLost)
{
    ::signal(SIGCHLD, SIG_IGN);
    const Started started = start(program("prog", "#!/bin/sh\nexit 7\n"));
    await(started);
    ::signal(SIGCHLD, SIG_DFL);
    EXPECT_EQ(exit_code(started.process), 0xFFFFFFFF);
}

// The program is started by a process that then ends; it must live on and finish its work.
TEST_F(ShellExecuteTest, LetsTheProgramOutliveUs)
{
    const std::string path = program("late", "#!/bin/sh\nwhile [ ! -e \"$0.go\" ]; do sleep 0.01; done\n"
                                             "echo still here\necho done > \"$0.log\"\n");
    EXPECT_EXIT(
        {
            start(path);
            handles.clear();
            ::close(STDOUT_FILENO);
            ExitProcess(0);
        },
        testing::ExitedWithCode(0), "");
    test::write_file(path + ".go", "");
    EXPECT_TRUE(test::wait_until([&] { return test::read_file(path + ".log") == "done\n"; }));
}

} // namespace
