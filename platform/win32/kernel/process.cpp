#include "platform/win32/kernel/process.h"

#include "platform/win32/kernel/detached_thread.h"
#include "platform/win32/kernel/last_error.h"

#include <cerrno>
#include <csignal>
#include <semaphore>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace win32 {

namespace {

// What posix_spawn is told about the child; freed with its owner.
class SpawnSettings {
public:
    SpawnSettings()
    {
        (void)::posix_spawn_file_actions_init(&actions_); // neither can fail here
        (void)::posix_spawnattr_init(&attributes_);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    ~SpawnSettings()
    {
        (void)::posix_spawn_file_actions_destroy(&actions_);
        (void)::posix_spawnattr_destroy(&attributes_);
    }

    // 0 or an errno value.
    int prepare(const std::string& directory)
    {
        sigset_t all;
        sigset_t none;
        (void)::sigfillset(&all);
        (void)::sigemptyset(&none);
        (void)::posix_spawnattr_setsigdefault(&attributes_, &all);
        (void)::posix_spawnattr_setsigmask(&attributes_, &none);
        (void)::posix_spawnattr_setflags(&attributes_,
                                         POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
        int error = 0;
        for (const int standard : { STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO }) {
            const int flags = standard == STDIN_FILENO ? O_RDONLY : O_WRONLY;
            if (error == 0)
                error = ::posix_spawn_file_actions_addopen(&actions_, standard, "/dev/null", flags, 0);
        }
        if (error == 0)
            error = ::posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1);
        if (error == 0 && !directory.empty())
            error = ::posix_spawn_file_actions_addchdir_np(&actions_, directory.c_str());
        return error;
    }

    const posix_spawn_file_actions_t* actions() const { return &actions_; }
    const posix_spawnattr_t* attributes() const { return &attributes_; }

private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

// The child's id, or -errno. The call returns when the program runs or has proved not to.
pid_t spawn(const ProgramStart& start)
{
    std::vector<char*> arguments;
    arguments.push_back(const_cast<char*>(start.path.c_str()));
    for (const std::string& argument : start.arguments)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);

    SpawnSettings settings;
    pid_t pid = 0;
    int error = settings.prepare(start.directory);
    if (error == 0)
        error = ::posix_spawn(&pid, start.path.c_str(), settings.actions(), settings.attributes(), arguments.data(),
                              ::environ);
    return error == 0 ? pid : -error;
}

DWORD exit_code_of(const siginfo_t& info)
{
    constexpr DWORD kSignalBase = 128;
    return info.si_code == CLD_EXITED ? static_cast<DWORD>(info.si_status)
                                      : kSignalBase + static_cast<DWORD>(info.si_status);
}

// The program's own signal handlers must run on its own threads.
void block_signals()
{
    sigset_t all;
    (void)::sigfillset(&all);
    (void)::pthread_sigmask(SIG_BLOCK, &all, nullptr); // a valid change
}

} // namespace

bool ProcessObject::terminate(DWORD exit_code)
{
    const std::lock_guard lock(mutex_);
    if (running_ == 0)
        return false;
    if (!terminated_with_)
        terminated_with_ = exit_code;
    return ::kill(running_, SIGKILL) == 0;
}

void ProcessObject::watch(pid_t pid)
{
    {
        const std::lock_guard lock(mutex_);
        running_ = pid;
    }
    siginfo_t info{};
    int result;
    do // it stays a zombie for now: until then its number names nobody else, and may be killed
        result = ::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT);
    while (result != 0 && errno == EINTR);
    {
        const std::lock_guard lock(mutex_);
        running_ = 0;
        const DWORD code = result == 0 ? exit_code_of(info) : kUnknownExit;
        const bool killed = result == 0 && info.si_code == CLD_KILLED && info.si_status == SIGKILL;
        exit_code_ = killed && terminated_with_ ? *terminated_with_ : code;
    }
    while (::waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
    }
    set();
}

int start_program(const ProgramStart& start, std::shared_ptr<ProcessObject>& process)
{
    const auto made = std::make_shared<ProcessObject>();
    if (!made->is_valid())
        return -EMFILE;
    // the watching thread starts the program itself: a program that nobody could watch is never started
    struct Report {
        std::binary_semaphore done{ 0 };
        pid_t pid = 0;
    };
    const auto report = std::make_shared<Report>(); // the thread may touch it last
    const int error = start_detached_thread(0, [made, &start, report] {
        block_signals();
        const pid_t pid = spawn(start);
        report->pid = pid;
        report->done.release(); // `start` may be gone from here on
        if (pid > 0)
            made->watch(pid);
    });
    if (error != 0)
        return -error;
    report->done.acquire();
    if (report->pid < 0)
        return report->pid;
    process = made;
    return 0;
}

} // namespace win32

using namespace win32;

DWORD WINAPI GetCurrentProcessId()
{
    return static_cast<DWORD>(::getpid());
}

BOOL WINAPI GetExitCodeProcess(HANDLE process, LPDWORD exit_code)
{
    const auto object = find_object<ProcessObject>(process);
    if (!object || !exit_code)
        return fail(FALSE, object ? ERROR_INVALID_PARAMETER : ERROR_INVALID_HANDLE);
    *exit_code = object->exit_code();
    return TRUE;
}

BOOL WINAPI TerminateProcess(HANDLE process, UINT exit_code)
{
    const auto object = find_object<ProcessObject>(process);
    if (!object)
        return fail(FALSE, ERROR_INVALID_HANDLE);
    if (!object->terminate(exit_code))
        return fail(FALSE, ERROR_ACCESS_DENIED); // what Windows says of a process that has ended
    return TRUE;
}
