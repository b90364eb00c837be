// CList: a list to be walked both ways. A POSITION stays good until its element is removed; a null one, or an end asked
// of an empty list, ends the process.
#pragma once

#include "elements.h"

#include <cstdlib>

template <class TYPE, class ARG_TYPE = const TYPE&>
class CList : public CObject {
public:
    explicit CList(int nBlockSize = 10) : nodes_(nBlockSize) {}
    ~CList() override { RemoveAll(); }

    int GetCount() const { return count_; }
    int GetSize() const { return count_; }
    BOOL IsEmpty() const { return count_ == 0; }

    TYPE& GetHead() { return node(position(head_))->value; }
    const TYPE& GetHead() const { return node(position(head_))->value; }
    TYPE& GetTail() { return node(position(tail_))->value; }
    const TYPE& GetTail() const { return node(position(tail_))->value; }

    POSITION AddHead(ARG_TYPE newElement) { return link(nullptr, head_, newElement); }
    POSITION AddTail(ARG_TYPE newElement) { return link(tail_, nullptr, newElement); }
    // The elements of another list, in its order.
    void AddHead(CList* pNewList)
    {
        const POSITION posBefore = GetHeadPosition();
        if (!posBefore)
            return AddTail(pNewList);
        int nLeft = pNewList->GetCount(); // it may be this list
        for (POSITION pos = pNewList->GetHeadPosition(); nLeft-- > 0;)
            InsertBefore(posBefore, pNewList->GetNext(pos));
    }
    void AddTail(CList* pNewList)
    {
        int nLeft = pNewList->GetCount();
        for (POSITION pos = pNewList->GetHeadPosition(); nLeft-- > 0;)
            AddTail(pNewList->GetNext(pos));
    }
    TYPE RemoveHead() { return remove(node(position(head_))); }
    TYPE RemoveTail() { return remove(node(position(tail_))); }
    void RemoveAll()
    {
        for (Node* next = nullptr; head_; head_ = next) {
            next = head_->next;
            nodes_.destroy(head_);
        }
        tail_ = nullptr;
        count_ = 0;
        nodes_.free_blocks();
    }

    POSITION GetHeadPosition() const { return position(head_); }
    POSITION GetTailPosition() const { return position(tail_); }
    TYPE& GetNext(POSITION& rPosition) { return step(rPosition, &Node::next); }
    const TYPE& GetNext(POSITION& rPosition) const { return step(rPosition, &Node::next); }
    TYPE& GetPrev(POSITION& rPosition) { return step(rPosition, &Node::previous); }
    const TYPE& GetPrev(POSITION& rPosition) const { return step(rPosition, &Node::previous); }
    TYPE& GetAt(POSITION pos) { return node(pos)->value; }
    const TYPE& GetAt(POSITION pos) const { return node(pos)->value; }
    void SetAt(POSITION pos, ARG_TYPE newElement) { node(pos)->value = newElement; }
    void RemoveAt(POSITION pos) { (void)remove(node(pos)); } // the value is not wanted

    // Before the head (after the tail) when the position is null.
    POSITION InsertBefore(POSITION pos, ARG_TYPE newElement)
    {
        return pos ? link(node(pos)->previous, node(pos), newElement) : AddHead(newElement);
    }
    POSITION InsertAfter(POSITION pos, ARG_TYPE newElement)
    {
        return pos ? link(node(pos), node(pos)->next, newElement) : AddTail(newElement);
    }

    // The first equal element at or after a position (null: the head); null if there is none.
    POSITION Find(ARG_TYPE searchValue, POSITION posStart = nullptr) const
    {
        for (Node* found = posStart ? node(posStart) : head_; found; found = found->next) {
            if (CompareElements(&found->value, &searchValue))
                return position(found);
        }
        return nullptr;
    }
    // The element at a place counted from 0; null if the list has no such place.
    POSITION FindIndex(int nIndex) const
    {
        if (nIndex < 0 || nIndex >= count_)
            return nullptr;
        Node* found = head_;
        while (nIndex-- > 0)
            found = found->next;
        return position(found);
    }

private:
    struct Node {
        Node* next;
        Node* previous;
        TYPE value;
    };

    static Node* node(POSITION pos)
    {
        if (!pos)
            std::abort();
        return reinterpret_cast<Node*>(pos);
    }
    static POSITION position(Node* node) { return reinterpret_cast<POSITION>(node); }
    static TYPE& step(POSITION& rPosition, Node* Node::*direction)
    {
        Node* const here = node(rPosition);
        rPosition = position(here->*direction);
        return here->value;
    }
    POSITION link(Node* previous, Node* next, ARG_TYPE value)
    {
        Node* const added = nodes_.make(next, previous, value);
        (previous ? previous->next : head_) = added;
        (next ? next->previous : tail_) = added;
        count_++;
        return position(added);
    }
    TYPE remove(Node* removed)
    {
        TYPE value = std::move(removed->value);
        (removed->previous ? removed->previous->next : head_) = removed->next;
        (removed->next ? removed->next->previous : tail_) = removed->previous;
        nodes_.destroy(removed);
        if (--count_ == 0)
            nodes_.free_blocks();
        return value;
    }

    mfc::NodePool<Node> nodes_;
    Node* head_ = nullptr;
    Node* tail_ = nullptr;
    int count_ = 0;
};

// A list of pointers that belong to somebody else.
class CPtrList : public CList<void*, void*> {
public:
    explicit CPtrList(int nBlockSize = 10) : CList(nBlockSize) {}
};
