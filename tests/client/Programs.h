// Running the client's programs in a home of their own.
#pragma once

#include "tests/support/TestHome.h"

#include <filesystem>
#include <string>
#include <vector>

namespace test {

// How a program ended, and what it said.
struct Outcome {
    int nExitCode = -1;
    std::string strOutput; // standard output and standard error together
};

// Runs the program to its end, with nothing on its standard input.
Outcome RunProgram(const std::string& strProgram, const std::vector<std::string>& arguments = {});

// The same with a terminal for its standard input and output, on which strTyped is typed.
Outcome RunOnTerminal(const std::string& strProgram, const std::string& strTyped);

std::string ReadFile(const std::filesystem::path& path);
void WriteFile(const std::filesystem::path& path, const std::string& strText); // with the folders above it

// A new home for one test, in force as long as this lives, with an empty installation folder in it.
class Home {
public:
    Home();
    ~Home();

    std::filesystem::path Config() const { return m_dir.path() / ".config"; }
    std::filesystem::path Data() const { return m_dir.path() / ".local/share"; }
    std::filesystem::path Root() const { return Data() / "Varnhal"; }
    std::filesystem::path Tesk() const { return Root() / "Tesk"; }

    // Copies a program into the installation folder.
    std::string Install(const char* pszProgram, const char* pszName) const;

private:
    TempDir m_dir;
};

} // namespace test
