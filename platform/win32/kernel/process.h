// Programs that we start. Each is watched by a thread of its own, so that an ended one never stays behind as a zombie,
// whether or not anybody keeps a handle.
#pragma once

#include "platform/win32/kernel/waitable.h"
#include "winbase.h"

#include <atomic>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace win32 {

// Signalled once the program has ended.
class ProcessObject : public Waitable {
public:
    ProcessObject() : Waitable(Reset::manual) {}

    // STILL_ACTIVE while it runs; then its exit status, 128 + n when signal n ended it, the code it was terminated
    // with, or kUnknownExit when the system kept no status for us (SIGCHLD ignored).
    DWORD exit_code() const { return exit_code_; }
    static constexpr DWORD kUnknownExit = 0xFFFFFFFF;

    // Ends it at once with this exit code. False when it has ended already.
    bool terminate(DWORD exit_code);

    // The watching thread's part: the child runs as `pid` from now on; waits for its end and signals it.
    void watch(pid_t pid);

private:
    std::mutex mutex_;
    pid_t running_ = 0;
    std::optional<DWORD> terminated_with_;
    std::atomic<DWORD> exit_code_ = STILL_ACTIVE;
};

struct ProgramStart {
    std::string path;                   // no search, no shell
    std::vector<std::string> arguments; // without the program's own name
    std::string directory;              // empty: the current one
};

// Starts a program in a session of its own with our environment, without our descriptors (the standard three are
// /dev/null), with default signal handling. 0 and `process`, or -errno.
[[nodiscard]] int start_program(const ProgramStart& start, std::shared_ptr<ProcessObject>& process);

} // namespace win32
