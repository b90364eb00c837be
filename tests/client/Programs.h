// Running the client's programs in a home of their own.
#pragma once

#include "tests/support/TestHome.h"

#include <filesystem>
#include <string>

namespace test {

// How a program ended, and what it said.
struct Outcome {
    int nExitCode = -1;
    std::string strOutput; // standard output and standard error together
};

// Runs the shell's command to its end, with nothing on its standard input.
Outcome RunProgram(const std::string& strCommand);

// The same for a program with a terminal for its standard input and output, on which strTyped is typed.
Outcome RunOnTerminal(const std::string& strProgram, const std::string& strTyped);

// A new home, in force as long as this lives, with an empty installation folder in it.
class Home {
public:
    Home() { std::filesystem::create_directories(Tesk()); }

    const std::filesystem::path& Path() const { return m_home.path(); }
    std::filesystem::path Config() const { return Path() / ".config"; }
    std::filesystem::path Data() const { return Path() / ".local/share"; }
    std::filesystem::path Root() const { return Data() / "Varnhal"; }
    std::filesystem::path Tesk() const { return Root() / "Tesk"; }
    std::filesystem::path Tesk(const std::string& strName) const { return Tesk() / strName; }

    // Copies a program into the installation folder; its path there.
    std::string Install(const char* pszProgram, const char* pszName) const;
    // Writes the list of the installation's files as they are now, and the lines given.
    void WriteList(const std::string& strMoreLines = {}) const;

private:
    const FreshHome m_home;
};

// A text of the current user's registry.
void WriteValue(const char* pszKey, const char* pszName, const std::string& strText);

} // namespace test
