#include "platform/win32/kernel/kernel_object.h"

#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/never_destroyed.h"
#include "winbase.h"

namespace win32 {

namespace {

constexpr std::uint8_t kKernelTag = 1;

}

HandleTable<KernelObject>& kernel_handles()
{
    static NeverDestroyed<HandleTable<KernelObject>> table(kKernelTag);
    return table.get();
}

} // namespace win32

BOOL WINAPI CloseHandle(HANDLE object)
{
    if (!win32::kernel_handles().remove(reinterpret_cast<std::uintptr_t>(object)))
        return win32::fail(FALSE, ERROR_INVALID_HANDLE);
    return TRUE;
}
