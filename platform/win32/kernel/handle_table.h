// Maps handles to shared objects, for every library that hands handles out. A handle carries a slot and a generation,
// so one that was closed never names the object that later took its slot. Safe from any thread; an object that somebody
// is using lives until they let go, even when its handle is closed meanwhile.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <utility>
#include <vector>

namespace win32 {

// Handles of different tables never look alike: each table sets its own `tag` (1 to 127) into their top bits, so a
// window handle passed as a bitmap is refused.
template <class Object>
class HandleTable {
public:
    explicit HandleTable(std::uint8_t tag) : tag_(tag) {}

    // A new handle for `object`, never 0.
    std::uintptr_t add(std::shared_ptr<Object> object)
    {
        const std::unique_lock lock(mutex_);
        std::uint32_t index;
        if (free_.empty()) {
            index = static_cast<std::uint32_t>(slots_.size());
            slots_.emplace_back();
        } else {
            index = free_.back();
            free_.pop_back();
        }
        slots_[index].object = std::move(object);
        return encode(index, slots_[index].generation);
    }

    // The object behind `handle`, or null.
    std::shared_ptr<Object> find(std::uintptr_t handle) const
    {
        const std::shared_lock lock(mutex_);
        const Slot* slot = locate(handle);
        return slot ? slot->object : nullptr;
    }

    // Takes the object out; its handle is dead from now on. Null if there was none.
    std::shared_ptr<Object> remove(std::uintptr_t handle)
    {
        const std::unique_lock lock(mutex_);
        Slot* slot = const_cast<Slot*>(locate(handle));
        if (!slot)
            return nullptr;
        std::shared_ptr<Object> object = std::move(slot->object);
        slot->object.reset();
        slot->generation = (slot->generation + 1) & kGenerationMask;
        free_.push_back(index_of(handle));
        return object;
    }

    // What stands in the table now; for leak checks and for walking all objects of a kind.
    std::vector<std::pair<std::uintptr_t, std::shared_ptr<Object>>> all() const
    {
        const std::shared_lock lock(mutex_);
        std::vector<std::pair<std::uintptr_t, std::shared_ptr<Object>>> found;
        for (std::uint32_t i = 0; i < slots_.size(); i++) {
            if (slots_[i].object)
                found.emplace_back(encode(i, slots_[i].generation), slots_[i].object);
        }
        return found;
    }

private:
    // 30 bits of slot and 15 of generation above two low bits that stay 0, as the documentation promises of handles.
    static constexpr unsigned kSlotShift = 2;
    static constexpr unsigned kGenerationShift = 32;
    static constexpr unsigned kTagShift = 47;
    static constexpr std::uint32_t kSlotMask = (1U << 30) - 1;
    static constexpr std::uint32_t kGenerationMask = (1U << 15) - 1;

    struct Slot {
        std::shared_ptr<Object> object;
        std::uint32_t generation = 0;
    };

    std::uintptr_t encode(std::uint32_t index, std::uint32_t generation) const
    {
        return (static_cast<std::uintptr_t>(tag_) << kTagShift) |
               (static_cast<std::uintptr_t>(generation) << kGenerationShift) |
               (static_cast<std::uintptr_t>(index) << kSlotShift);
    }
    static std::uint32_t index_of(std::uintptr_t handle)
    {
        return static_cast<std::uint32_t>(handle >> kSlotShift) & kSlotMask;
    }
    const Slot* locate(std::uintptr_t handle) const
    {
        const std::uint32_t index = index_of(handle);
        if (index >= slots_.size() || !slots_[index].object || encode(index, slots_[index].generation) != handle)
            return nullptr;
        return &slots_[index];
    }

    const std::uint8_t tag_;
    mutable std::shared_mutex mutex_;
    std::vector<Slot> slots_;
    std::vector<std::uint32_t> free_;
};

} // namespace win32
