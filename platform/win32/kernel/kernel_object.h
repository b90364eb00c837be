// What a kernel handle stands for: a file, an event, a thread or a process. One table holds them all, so one
// CloseHandle serves them all; callers of the interface ask for the kind they need and are refused any other.
#pragma once

#include "platform/win32/kernel/handle_table.h"
#include "windef.h"

#include <memory>

namespace win32 {

class KernelObject {
public:
    KernelObject() = default;
    KernelObject(const KernelObject&) = delete;
    KernelObject& operator=(const KernelObject&) = delete;
    virtual ~KernelObject() = default;
};

HandleTable<KernelObject>& kernel_handles();

inline HANDLE open_handle(std::shared_ptr<KernelObject> object)
{
    return reinterpret_cast<HANDLE>(kernel_handles().add(std::move(object)));
}

// The object behind the handle if it is one of this kind, else null.
template <class Kind>
std::shared_ptr<Kind> find_object(HANDLE handle)
{
    return std::dynamic_pointer_cast<Kind>(kernel_handles().find(reinterpret_cast<std::uintptr_t>(handle)));
}

} // namespace win32
