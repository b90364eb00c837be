#include "thread_state.h"

#include "afxwin/device_context.h"
#include "afxwin/gdi_object.h"
#include "afxwin/menu.h"
#include "afxwin/wnd.h"

namespace mfc {

namespace {

constinit thread_local ThreadState* state = nullptr; // trivial: readable to the thread's very end

struct Owner {
    ~Owner() { delete std::exchange(state, nullptr); }
};

} // namespace

ThreadState& thread_state()
{
    if (!state) {
        state = new ThreadState;
        static thread_local Owner owner;
        (void)owner; // named, so that it is made and later destroyed
    }
    return *state;
}

} // namespace mfc
