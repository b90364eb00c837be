// Runs the installer as a process of its own (setup_driver) in the home that HOME names now.
#pragma once

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace test {

class InstallerProcess {
public:
    // strRoad: the page to close the window at, or "finish". strCabinet: takes the payload's place; empty: the payload.
    explicit InstallerProcess(const std::string& strRoad, const std::string& strCabinet = {})
    {
        ::setenv("SETUP_ROAD", strRoad.c_str(), 1);
        if (strCabinet.empty())
            ::unsetenv("SETUP_CABINET");
        else
            ::setenv("SETUP_CABINET", strCabinet.c_str(), 1);
        int pipeEnds[2] = { -1, -1 };
        if (::pipe2(pipeEnds, O_CLOEXEC) != 0 || (m_nPid = ::fork()) < 0)
            std::abort();
        if (m_nPid == 0) {
            ::dup2(pipeEnds[1], STDOUT_FILENO);
            ::execl(SETUP_DRIVER, SETUP_DRIVER, nullptr);
            ::_exit(127);
        }
        ::close(pipeEnds[1]);
        m_nOutput = pipeEnds[0];
    }
    ~InstallerProcess()
    {
        Kill();
        ::close(m_nOutput);
    }

    InstallerProcess(const InstallerProcess&) = delete;
    InstallerProcess& operator=(const InstallerProcess&) = delete;

    // Until the installing page is there. FALSE: the process ended before.
    bool AwaitInstalling() const
    {
        char c = 0;
        return ::read(m_nOutput, &c, 1) == 1;
    }

    // The process's exit code; -1 when a signal ended it.
    int Wait()
    {
        int nStatus = 0;
        while (::waitpid(m_nPid, &nStatus, 0) < 0 && errno == EINTR) {
        }
        m_nPid = 0;
        return WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1;
    }

    void Kill()
    {
        if (m_nPid <= 0)
            return;
        ::kill(m_nPid, SIGKILL);
        (void)Wait();
    }

private:
    pid_t m_nPid = 0;
    int m_nOutput = -1;
};

} // namespace test
