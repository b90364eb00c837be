#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/waitable.h"
#include "winbase.h"

namespace win32 {

namespace {

class EventObject : public Waitable {
public:
    using Waitable::Waitable;
};

} // namespace

} // namespace win32

using namespace win32;

HANDLE WINAPI CreateEventA(LPSECURITY_ATTRIBUTES, BOOL manual_reset, BOOL initial_state, LPCSTR name)
{
    if (name)
        return fail(HANDLE{}, ERROR_NOT_SUPPORTED);
    auto event = std::make_shared<EventObject>(manual_reset ? Waitable::Reset::manual : Waitable::Reset::automatic);
    if (!event->is_valid())
        return fail(HANDLE{}, ERROR_TOO_MANY_OPEN_FILES);
    if (initial_state)
        event->set();
    return open_handle(std::move(event));
}

BOOL WINAPI SetEvent(HANDLE event)
{
    const auto object = find_object<EventObject>(event);
    if (!object)
        return fail(FALSE, ERROR_INVALID_HANDLE);
    object->set();
    return TRUE;
}

BOOL WINAPI ResetEvent(HANDLE event)
{
    const auto object = find_object<EventObject>(event);
    if (!object)
        return fail(FALSE, ERROR_INVALID_HANDLE);
    object->reset();
    return TRUE;
}
