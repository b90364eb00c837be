// What all collections share: how elements are compared and hashed, and where lists and maps keep their nodes.
#pragma once

#include "afx_string.h"
#include "exception.h"

#include <cstddef>
#include <new>
#include <utility>

// A place in a list or map. Null: past the last.
struct __POSITION;
using POSITION = __POSITION*;

// For a type whose values are not equal by ==, specialise this.
template <class TYPE, class ARG_TYPE>
BOOL CompareElements(const TYPE* pElement1, const ARG_TYPE* pElement2)
{
    return *pElement1 == *pElement2;
}

// For a key that is no number or pointer, specialise this. It decides the order in which a map is walked.
template <class ARG_KEY>
UINT HashKey(ARG_KEY key)
{
    return static_cast<UINT>((ULONG_PTR)key >> 4); // NOLINT: a pointer or a number
}

// h * 33 + byte, the byte taken with its sign.
template <>
inline UINT HashKey<LPCSTR>(LPCSTR key)
{
    UINT nHash = 0;
    for (; key && *key; key++)
        nHash = nHash * 33 + static_cast<UINT>(static_cast<signed char>(*key));
    return nHash;
}

template <>
inline UINT HashKey<const CString&>(const CString& key)
{
    return HashKey<LPCSTR>(key);
}

template <>
inline UINT HashKey<CString>(CString key) // NOLINT: the caller chose to pass a copy
{
    return HashKey<LPCSTR>(key);
}

namespace mfc {

// Nodes come in blocks of a chosen number; the blocks go back together when the pool is emptied.
template <class Node>
class NodePool {
public:
    explicit NodePool(int block_size) : block_size_(block_size < 1 ? 1 : static_cast<size_t>(block_size)) {}
    ~NodePool() { free_blocks(); }
    NodePool(const NodePool&) = delete;
    NodePool& operator=(const NodePool&) = delete;

    // Throws what the constructor throws, or CMemoryException.
    template <class... Arguments>
    Node* make(Arguments&&... arguments)
    {
        if (!free_)
            add_block();
        Slot* slot = free_;
        Slot* const next = slot->next; // the constructor overwrites it
        Node* node = new (slot) Node{ std::forward<Arguments>(arguments)... };
        free_ = next;
        return node;
    }

    void destroy(Node* node)
    {
        node->~Node();
        free_ = new (static_cast<void*>(node)) Slot{ free_ };
    }

    // Every node must have been destroyed.
    void free_blocks()
    {
        while (blocks_) {
            Block* const next = blocks_->next;
            ::operator delete(blocks_, std::align_val_t(kAlignment));
            blocks_ = next;
        }
        free_ = nullptr;
    }

private:
    union Slot {
        Slot* next;
        alignas(Node) std::byte place[sizeof(Node)];
    };
    struct Block {
        Block* next;
    };
    static constexpr size_t kAlignment = alignof(Slot) > alignof(Block) ? alignof(Slot) : alignof(Block);
    static constexpr size_t kFirstSlot = (sizeof(Block) + kAlignment - 1) / kAlignment * kAlignment;

    void add_block()
    {
        void* memory =
            ::operator new(kFirstSlot + block_size_ * sizeof(Slot), std::align_val_t(kAlignment), std::nothrow);
        if (!memory)
            AfxThrowMemoryException();
        blocks_ = new (memory) Block{ blocks_ };
        auto* const slots = reinterpret_cast<Slot*>(static_cast<std::byte*>(memory) + kFirstSlot);
        for (size_t i = block_size_; i-- > 0;)
            free_ = new (slots + i) Slot{ free_ };
    }

    const size_t block_size_;
    Block* blocks_ = nullptr;
    Slot* free_ = nullptr;
};

} // namespace mfc
