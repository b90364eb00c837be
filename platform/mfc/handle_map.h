// Which object stands for a handle. Permanent objects own their handles and enter themselves; temporary ones are made
// for handles that nobody owns, one for each class they are asked as, and go when the thread is idle.
#pragma once

#include "afx/object.h"

#include <map>
#include <memory>
#include <memory_resource>
#include <unordered_map>
#include <utility>

namespace mfc {

// `Object` has Detach(), which takes its handle away and leaves this map, and may be called on a temporary object.
template <class Handle, class Object>
class HandleMap {
public:
    HandleMap() = default;
    HandleMap(const HandleMap&) = delete;
    HandleMap& operator=(const HandleMap&) = delete;
    ~HandleMap() { delete_temporaries(); }

    void set_permanent(Handle handle, Object* object) { permanent_[handle] = object; }
    // Forgets the handle if it is that object's.
    void remove(Handle handle, const Object* object)
    {
        if (const auto found = permanent_.find(handle); found != permanent_.end() && found->second == object)
            permanent_.erase(found);
    }
    Object* permanent(Handle handle) const
    {
        const auto found = permanent_.find(handle);
        return found != permanent_.end() ? found->second : nullptr;
    }

    // The permanent object if it is of that class, else a temporary one; `make` gives a new one with the handle in it.
    template <class Make>
    Object* find(Handle handle, const CRuntimeClass* wanted, Make make)
    {
        if (Object* owner = permanent(handle); owner && owner->IsKindOf(wanted))
            return owner;
        std::unique_ptr<Object>& temporary = temporary_[{ handle, wanted }];
        if (!temporary)
            temporary = make();
        return temporary.get();
    }

    void delete_temporaries()
    {
        for (auto& [key, object] : std::exchange(temporary_, {}))
            object->Detach(); // the handle is not ours to delete
    }

private:
    std::pmr::unsynchronized_pool_resource memory_;                  // contexts come and go with every painting
    std::pmr::unordered_map<Handle, Object*> permanent_{ &memory_ }; // borrowed
    std::map<std::pair<Handle, const CRuntimeClass*>, std::unique_ptr<Object>> temporary_;
};

} // namespace mfc
