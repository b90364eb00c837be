// How far a job on another thread is; read from any thread.
#pragma once

#include <atomic>
#include <cstddef>

namespace client {

struct Progress {
    std::atomic<std::size_t> nDone{ 0 }; // files
    std::atomic<std::size_t> nAll{ 0 };
};

} // namespace client
