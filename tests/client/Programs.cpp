#include "tests/client/Programs.h"

#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include <fcntl.h>
#include <pty.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace test {

Outcome RunProgram(const std::string& strProgram, const std::vector<std::string>& arguments)
{
    std::vector<char*> argv{ const_cast<char*>(strProgram.c_str()) };
    for (const std::string& strArgument : arguments)
        argv.push_back(const_cast<char*>(strArgument.c_str()));
    argv.push_back(nullptr);

    const TempDir dir;
    const std::string strOutput = dir / "output";
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, strOutput.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
    pid_t nProcess = 0;
    const int nError = ::posix_spawn(&nProcess, strProgram.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    EXPECT_EQ(nError, 0) << strProgram;
    int nStatus = 0;
    Outcome run;
    if (nError == 0 && ::waitpid(nProcess, &nStatus, 0) == nProcess && WIFEXITED(nStatus))
        run.nExitCode = WEXITSTATUS(nStatus);
    run.strOutput = ReadFile(strOutput);
    return run;
}

Outcome RunOnTerminal(const std::string& strProgram, const std::string& strTyped)
{
    int nTerminal = -1;
    Outcome outcome;
    const pid_t nProcess = ::forkpty(&nTerminal, nullptr, nullptr, nullptr);
    if (nProcess == 0) {
        ::execl(strProgram.c_str(), strProgram.c_str(), nullptr);
        ::_exit(127);
    }
    EXPECT_GT(nProcess, 0);
    EXPECT_EQ(::write(nTerminal, strTyped.data(), strTyped.size()), static_cast<ssize_t>(strTyped.size()));
    std::array<char, 4096> buffer;
    ssize_t nRead = 0;
    while ((nRead = ::read(nTerminal, buffer.data(), buffer.size())) > 0) // ends in EIO when the program has ended
        outcome.strOutput.append(buffer.data(), static_cast<std::size_t>(nRead));
    int nStatus = 0;
    if (::waitpid(nProcess, &nStatus, 0) == nProcess && WIFEXITED(nStatus))
        outcome.nExitCode = WEXITSTATUS(nStatus);
    ::close(nTerminal);
    return outcome;
}

std::string ReadFile(const std::filesystem::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>() };
}

void WriteFile(const std::filesystem::path& path, const std::string& strText)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << strText;
}

Home::Home()
{
    use_home(m_dir.path());
    std::filesystem::create_directories(Tesk());
}

Home::~Home()
{
    use_home(home().path());
}

std::string Home::Install(const char* pszProgram, const char* pszName) const
{
    const std::filesystem::path installed = Tesk() / pszName;
    std::filesystem::copy_file(pszProgram, installed, std::filesystem::copy_options::overwrite_existing);
    return installed.string();
}

} // namespace test
