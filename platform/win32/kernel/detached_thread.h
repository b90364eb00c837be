// Threads that nobody joins: they end on their own, or with the process.
#pragma once

#include <cstddef>
#include <functional>

namespace win32 {

// Runs `body` on a thread of its own with a stack of at least `stack_size` bytes (0: the system's default). 0, or the
// errno value that says why no thread could be made; `body` is then destroyed without having run.
[[nodiscard]] int start_detached_thread(std::size_t stack_size, std::function<void()> body);

} // namespace win32
