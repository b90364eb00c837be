// What can be waited for: events, threads, processes. Signalled or not; a signalled object's descriptor is readable, so
// that a message loop can poll it beside its own.
#pragma once

#include "platform/win32/kernel/kernel_object.h"
#include "platform/win32/kernel/unique_fd.h"

#include <span>

namespace win32 {

class Waitable : public KernelObject {
public:
    // How a wait that succeeds leaves the object.
    enum class Reset { manual, automatic };

    explicit Waitable(Reset reset);
    // False when the system had no descriptor left; such an object is only to be thrown away.
    bool is_valid() const { return static_cast<bool>(descriptor_); }
    int descriptor() const { return descriptor_.get(); }

    void set();
    void reset();

private:
    friend DWORD wait_for(std::span<const std::shared_ptr<Waitable>> objects, bool all, DWORD timeout);

    void take();
    void reset_locked();

    const Reset reset_;
    const UniqueFd descriptor_;
    bool signalled_ = false; // under the one lock of all waits, so that waiting for all takes all at once or none
};

// Waits until one of the objects, or all of them, are signalled, and takes their signals. WAIT_OBJECT_0 + the index of
// the first one signalled (0 for all), or WAIT_TIMEOUT after `timeout` milliseconds.
DWORD wait_for(std::span<const std::shared_ptr<Waitable>> objects, bool all, DWORD timeout);

} // namespace win32
