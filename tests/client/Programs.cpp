#include "tests/client/Programs.h"

#include "client/install/FileList.h"

#include <windows.h>
#include <winreg.h>

#include <array>
#include <cstdio>
#include <map>
#include <vector>

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace test {

namespace {

int ExitCodeOf(int nStatus)
{
    return WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1;
}

} // namespace

Outcome RunProgram(const std::string& strCommand)
{
    Outcome outcome;
    FILE* const pOutput = ::popen((strCommand + " < /dev/null 2>&1").c_str(), "r");
    for (int c = 0; (c = std::getc(pOutput)) != EOF;)
        outcome.strOutput += static_cast<char>(c);
    outcome.nExitCode = ExitCodeOf(::pclose(pOutput));
    return outcome;
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
    EXPECT_EQ(::write(nTerminal, strTyped.data(), strTyped.size()), static_cast<ssize_t>(strTyped.size()));
    std::array<char, 4096> buffer;
    ssize_t nRead = 0;
    while ((nRead = ::read(nTerminal, buffer.data(), buffer.size())) > 0) // ends in EIO when the program has ended
        outcome.strOutput.append(buffer.data(), static_cast<std::size_t>(nRead));
    int nStatus = 0;
    EXPECT_EQ(::waitpid(nProcess, &nStatus, 0), nProcess);
    outcome.nExitCode = ExitCodeOf(nStatus);
    ::close(nTerminal);
    return outcome;
}

std::string Home::Install(const char* pszProgram, const char* pszName) const
{
    std::filesystem::copy_file(pszProgram, Tesk(pszName), std::filesystem::copy_options::overwrite_existing);
    return Tesk(pszName).string();
}

void Home::WriteList(const std::string& strMoreLines) const
{
    std::map<std::string, client::ListedFile> files; // in the order of their names, as the payload's list
    for (const auto& entry : std::filesystem::recursive_directory_iterator(Tesk())) {
        const std::string strName = entry.path().lexically_relative(Tesk()).string();
        if (entry.is_regular_file() && strName != client::kFileListName) {
            const std::string strBytes = read_file(entry.path());
            files[strName] = { client::Sha256(strBytes), strBytes.size(), strName };
        }
    }
    std::vector<client::ListedFile> listed;
    for (const auto& [strName, file] : files)
        listed.push_back(file);
    write_file(Tesk(client::kFileListName), client::FormatFileList(listed) + strMoreLines);
}

void WriteValue(const char* pszKey, const char* pszName, const std::string& strText)
{
    HKEY hKey = nullptr;
    ASSERT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, pszKey, &hKey), ERROR_SUCCESS);
    EXPECT_EQ(RegSetValueExA(hKey, pszName, 0, REG_SZ, reinterpret_cast<const BYTE*>(strText.c_str()),
                             static_cast<DWORD>(strText.size() + 1)),
              ERROR_SUCCESS);
    RegCloseKey(hKey);
}

} // namespace test
