// Holds an object that is made on first use and never destroyed, so that a thread which still runs while the process
// ends finds it alive.
#pragma once

#include <new>
#include <utility>

namespace win32 {

template <class Object>
class NeverDestroyed {
public:
    template <class... Arguments>
    explicit NeverDestroyed(Arguments&&... arguments)
    {
        ::new (storage_) Object(std::forward<Arguments>(arguments)...);
    }
    NeverDestroyed(const NeverDestroyed&) = delete;
    NeverDestroyed& operator=(const NeverDestroyed&) = delete;

    Object& get() { return *std::launder(reinterpret_cast<Object*>(storage_)); }

private:
    alignas(Object) unsigned char storage_[sizeof(Object)];
};

} // namespace win32
