// CMap: values by key. The order of walking is part of its promise: buckets in turn (a key's bucket is its hash modulo
// their number, 17 unless set before the first entry), and within a bucket the newest entry first.
#pragma once

#include "elements.h"

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
        UINT hash;
        KEY key;
        VALUE value;
    };

    static bool is_key(const Node& node, ARG_KEY key, UINT hash)
    {
        return node.hash == hash && CompareElements(&node.key, &key);
    }
    Node* find(ARG_KEY key, UINT hash) const
    {
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
        Node* const added = nodes_.make(bucket, hash, KEY(key), VALUE());
        bucket = added;
        count_++;
        return added;
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
    UINT bucket_count_ = 17;
    int count_ = 0;
};
