// What must happen when the process ends while other threads still work: temporaries go.
#pragma once

#include <functional>
#include <list>

namespace win32 {

// A promise to run a function if the process ends (by ExitProcess) before the promise is given back. Take it before you
// make what it cleans up. Safe from any thread: once the process is ending, a thread that takes one or gives one back
// stays there for good, so nothing new can be left behind.
class [[nodiscard]] AtProcessEnd {
public:
    AtProcessEnd() = default;
    AtProcessEnd(AtProcessEnd&& other) noexcept;
    AtProcessEnd& operator=(AtProcessEnd&& other) noexcept;
    ~AtProcessEnd();

private:
    using Functions = std::list<std::function<void()>>;
    friend AtProcessEnd at_process_end(std::function<void()> function);
    friend void run_process_end();

    static Functions& functions();

    Functions::iterator place_;
    bool holds_ = false;
};

// `function` runs on the thread that ends the process while the owner's thread may still run. It must not throw, block,
// or take or give back such a promise.
AtProcessEnd at_process_end(std::function<void()> function);

// Runs every function that is promised, the newest first, and lets nobody past this file any more.
void run_process_end();

} // namespace win32
