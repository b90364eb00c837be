// CMap: values by key. The order of walking is part of its promise: buckets in turn (a key's bucket is its hash modulo
// their number, 17 unless set before the first entry), and within a bucket the newest entry first.
#pragma once

#include "elements.h"

#include <algorithm>
#include <memory>

inline const POSITION BEFORE_START_POSITION = reinterpret_cast<POSITION>(-1);

template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
class CMap : public CObject {
public:
    explicit CMap(int nBlockSize = 10) : nodes_(nBlockSize) {}
    ~CMap() override { RemoveAll(); }

    int GetCount() const { return count_; }
    int GetSize() const { return count_; }
    BOOL IsEmpty() const { return count_ == 0; }

    // FALSE: the key is not there and rValue stays as it is.
    BOOL Lookup(ARG_KEY key, VALUE& rValue) const
    {
        const Node* const found = find(key, HashKey<ARG_KEY>(key));
        if (!found)
            return FALSE;
        rValue = found->value;
        return TRUE;
    }
    // The key's value; a key that is not there is entered with a default value.
    VALUE& operator[](ARG_KEY key)
    {
        const UINT hash = HashKey<ARG_KEY>(key);
        Node* found = find(key, hash);
        return found ? found->value : add(key, hash)->value;
    }
    // A key that is there keeps its place.
    void SetAt(ARG_KEY key, ARG_VALUE newValue) { (*this)[key] = newValue; }
    // FALSE: it was not there.
    BOOL RemoveKey(ARG_KEY key)
    {
        const UINT hash = HashKey<ARG_KEY>(key);
        if (!buckets_)
            return FALSE;
        for (Node** link = &buckets_[hash % bucket_count_]; *link; link = &(*link)->next) {
            if (!is_key(**link, key, hash))
                continue;
            Node* const removed = *link;
            *link = removed->next;
            remove_from_index(removed);
            nodes_.destroy(removed);
            if (--count_ == 0)
                RemoveAll();
            return TRUE;
        }
        return FALSE;
    }
    void RemoveAll()
    {
        for (UINT i = 0; buckets_ && i < bucket_count_; i++) {
            for (Node* next = nullptr; buckets_[i]; buckets_[i] = next) {
                next = buckets_[i]->next;
                nodes_.destroy(buckets_[i]);
            }
        }
        buckets_.reset();
        index_.reset();
        index_size_ = 0;
        count_ = 0;
        nodes_.free_blocks();
    }

    // The place before the first entry; null when there is none.
    POSITION GetStartPosition() const { return count_ == 0 ? nullptr : BEFORE_START_POSITION; }
    // Copies the next entry out and moves on; null after the last. The present entry must not have been removed.
    void GetNextAssoc(POSITION& rNextPosition, KEY& rKey, VALUE& rValue) const
    {
        const Node* here = reinterpret_cast<const Node*>(rNextPosition);
        if (rNextPosition == BEFORE_START_POSITION)
            here = first_from(0);
        if (!here)
            return;
        const Node* next = here->next ? here->next : first_from(here->hash % bucket_count_ + 1);
        rNextPosition = reinterpret_cast<POSITION>(const_cast<Node*>(next));
        rKey = here->key;
        rValue = here->value;
    }

    UINT GetHashTableSize() const { return bucket_count_; }
    // Sets the number of buckets of an empty map; does nothing to one that has entries.
    void InitHashTable(UINT nHashSize, BOOL bAllocNow = TRUE)
    {
        if (count_ > 0 || nHashSize == 0)
            return;
        buckets_.reset();
        bucket_count_ = nHashSize;
        if (bAllocNow)
            allocate_buckets();
    }

private:
    struct Node {
        Node* next;
        Node* next_in_index;
        UINT hash;
        KEY key;
        VALUE value;
    };

    // Once there are many entries for the buckets they are found by an index beside them, which grows with their
    // number. The buckets alone decide the order.
    static constexpr UINT kIndexFrom = 256; // entries

    static bool is_key(const Node& node, ARG_KEY key, UINT hash)
    {
        return node.hash == hash && CompareElements(&node.key, &key);
    }
    Node* find(ARG_KEY key, UINT hash) const
    {
        if (index_) {
            Node* indexed = index_[index_slot(hash)];
            while (indexed && !is_key(*indexed, key, hash))
                indexed = indexed->next_in_index;
            return indexed;
        }
        Node* found = buckets_ ? buckets_[hash % bucket_count_] : nullptr;
        while (found && !is_key(*found, key, hash))
            found = found->next;
        return found;
    }
    Node* add(ARG_KEY key, UINT hash)
    {
        if (!buckets_)
            allocate_buckets();
        Node*& bucket = buckets_[hash % bucket_count_];
        Node* const added = nodes_.make(bucket, nullptr, hash, KEY(key), VALUE());
        bucket = added;
        count_++;
        if (static_cast<UINT>(count_) > std::max(index_size_, kIndexFrom))
            make_index();
        else if (index_)
            add_to_index(added);
        return added;
    }
    // Of a size that is a power of two. Without memory for it the map does without.
    void make_index()
    {
        index_size_ = std::max(index_size_, kIndexFrom) * 2;
        index_.reset(new (std::nothrow) Node*[index_size_]());
        for (UINT i = 0; index_ && i < bucket_count_; i++) {
            for (Node* node = buckets_[i]; node; node = node->next)
                add_to_index(node);
        }
    }
    UINT index_slot(UINT hash) const
    {
        constexpr UINT kScatter = 0x9E3779B1; // hashes of like names lie close together
        hash *= kScatter;
        return (hash ^ hash >> 16) & (index_size_ - 1);
    }
    void add_to_index(Node* node)
    {
        Node*& first = index_[index_slot(node->hash)];
        node->next_in_index = first;
        first = node;
    }
    void remove_from_index(Node* removed)
    {
        if (!index_)
            return;
        Node** link = &index_[index_slot(removed->hash)];
        while (*link != removed)
            link = &(*link)->next_in_index;
        *link = removed->next_in_index;
    }
    const Node* first_from(UINT bucket) const
    {
        for (; buckets_ && bucket < bucket_count_; bucket++) {
            if (buckets_[bucket])
                return buckets_[bucket];
        }
        return nullptr;
    }
    void allocate_buckets()
    {
        buckets_.reset(new (std::nothrow) Node*[bucket_count_]());
        if (!buckets_)
            AfxThrowMemoryException();
    }

    mfc::NodePool<Node> nodes_;
    std::unique_ptr<Node*[]> buckets_;
    std::unique_ptr<Node*[]> index_; // null: few entries
    UINT index_size_ = 0;
    UINT bucket_count_ = 17;
    int count_ = 0;
};
