// CArray: an array that grows. An index outside it ends the process; memory that cannot be had throws CMemoryException
// and leaves the array as it was.
#pragma once

#include "elements.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <type_traits>
#include <vector>

template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray : public CObject {
    static_assert(!std::is_same_v<TYPE, bool>, "an array of BOOL holds truth values");

public:
    int GetSize() const { return static_cast<int>(elements_.size()); }
    int GetCount() const { return GetSize(); }
    int GetUpperBound() const { return GetSize() - 1; }
    BOOL IsEmpty() const { return elements_.empty(); }

    // New elements are default values. The size to grow by is a hint that is not needed.
    void SetSize(int nNewSize, int /*nGrowBy*/ = -1)
    {
        guarded([&] { elements_.resize(static_cast<size_t>(std::max(nNewSize, 0))); });
    }
    void FreeExtra()
    {
        guarded([&] { elements_.shrink_to_fit(); });
    }
    void RemoveAll() { elements_ = std::vector<TYPE>(); }

    const TYPE& GetAt(int nIndex) const { return elements_[checked(nIndex)]; }
    TYPE& GetAt(int nIndex) { return elements_[checked(nIndex)]; }
    TYPE& ElementAt(int nIndex) { return elements_[checked(nIndex)]; }
    const TYPE& operator[](int nIndex) const { return GetAt(nIndex); }
    TYPE& operator[](int nIndex) { return ElementAt(nIndex); }
    void SetAt(int nIndex, ARG_TYPE newElement) { elements_[checked(nIndex)] = newElement; }
    const TYPE* GetData() const { return elements_.data(); }
    TYPE* GetData() { return elements_.data(); }

    void SetAtGrow(int nIndex, ARG_TYPE newElement)
    {
        const TYPE element = newElement; // it may be one of ours, which growing moves
        if (nIndex >= GetSize())
            SetSize(nIndex + 1);
        elements_[checked(nIndex)] = element;
    }
    // The new element's index.
    int Add(ARG_TYPE newElement)
    {
        guarded([&] { elements_.push_back(newElement); });
        return GetUpperBound();
    }
    // The index of the first element appended.
    int Append(const CArray& src)
    {
        const int nOldSize = GetSize();
        const std::vector<TYPE> added = src.elements_;
        guarded([&] { elements_.insert(elements_.end(), added.begin(), added.end()); });
        return nOldSize;
    }
    void Copy(const CArray& src)
    {
        guarded([&] { elements_ = src.elements_; });
    }
    // An index past the end grows the array up to it.
    void InsertAt(int nIndex, ARG_TYPE newElement, int nCount = 1)
    {
        const TYPE element = newElement;
        if (nCount < 1)
            return;
        if (nIndex > GetSize())
            SetSize(nIndex);
        guarded([&] { elements_.insert(place(nIndex), static_cast<size_t>(nCount), element); });
    }
    void RemoveAt(int nIndex, int nCount = 1)
    {
        if (nCount < 1)
            return;
        if (nCount > GetSize() - nIndex)
            std::abort();
        const auto first = place(nIndex);
        elements_.erase(first, first + nCount);
    }

private:
    size_t checked(int index) const
    {
        const auto place = static_cast<size_t>(index); // a negative index lies far outside
        if (place >= elements_.size())
            std::abort();
        return place;
    }
    auto place(int index) // of an element, or the end
    {
        if (index < 0 || index > GetSize())
            std::abort();
        return elements_.begin() + index;
    }
    template <class Change>
    static void guarded(Change change)
    {
        try {
            change();
        } catch (const std::bad_alloc&) {
            AfxThrowMemoryException();
        } catch (const std::length_error&) {
            AfxThrowMemoryException();
        }
    }

    std::vector<TYPE> elements_;
};
