#include "platform/win32/kernel/process_begin.h"

#include <cerrno>
#include <csignal>
#include <initializer_list>

#include <fcntl.h>
#include <unistd.h>

namespace win32 {

namespace {

void fill_standard_descriptors()
{
    for (const int standard : { STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO }) {
        if (::fcntl(standard, F_GETFD) < 0 && errno == EBADF)
            (void)::open("/dev/null", standard == STDIN_FILENO ? O_RDONLY : O_WRONLY); // takes the lowest free number
    }
}

void survive_size_limit()
{
    struct sigaction current {};
    if (::sigaction(SIGXFSZ, nullptr, &current) == 0 && current.sa_handler == SIG_DFL)
        (void)::signal(SIGXFSZ, SIG_IGN); // it is a valid signal, so this cannot fail
}

} // namespace

void prepare_process()
{
    fill_standard_descriptors();
    survive_size_limit();
}

} // namespace win32
