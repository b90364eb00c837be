// What must be true when the process ends while other threads still work: nothing half done lies about.
#pragma once

#include <functional>
#include <list>

namespace win32 {

// While one lives, the process does not end (by ExitProcess): a few calls that leave something half done in between,
// such as making a temporary file and promising to remove it, or renaming it and giving the promise back. Keep it
// short, and do not call ExitProcess under it. Once the process is ending, a thread that wants one waits for the end
// instead.
class [[nodiscard]] ProcessEndHold {
public:
    ProcessEndHold();
    ~ProcessEndHold();
    ProcessEndHold(const ProcessEndHold&) = delete;
    ProcessEndHold& operator=(const ProcessEndHold&) = delete;
};

// A promise to run a function if the process ends before the promise is given back, which its end of life does. Safe
// from any thread. Do what it undoes, and take it, under one hold; likewise what makes it needless, and giving it back.
class [[nodiscard]] AtProcessEnd {
public:
    AtProcessEnd() = default;
    AtProcessEnd(AtProcessEnd&& other) noexcept;
    AtProcessEnd& operator=(AtProcessEnd&& other) noexcept;
    ~AtProcessEnd() { give_back(); }

    void give_back();

private:
    using Functions = std::list<std::function<void()>>;
    friend AtProcessEnd at_process_end(std::function<void()> function);
    friend void run_process_end();

    static Functions& functions();

    Functions::iterator place_;
    bool holds_ = false;
};

// `function` runs on the thread that ends the process, while the owner's thread stands still or does something else. It
// must not throw, block, or use anything declared here.
AtProcessEnd at_process_end(std::function<void()> function);

// Waits for all holds, runs every function that is promised, the newest first, and lets nobody past this file any more.
void run_process_end();

} // namespace win32
