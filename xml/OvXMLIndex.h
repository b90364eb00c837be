// Finds the attributes of an element that has many, and the place of a new one in the order in which they are visited.
#pragma once

#include <array>
#include <cstddef>
#include <unordered_set>

#include "xml/OvXMLKey.h"

class OvXMLIndex {
public:
    // The order's buckets, and the number of attributes up to which the chain itself is searched.
    static constexpr unsigned kBuckets = 17;
    static constexpr unsigned kSearchedWithout = 16;

    OvXMLAttribute* Find(const OvXMLAttribute::Key& key) const;
    // The first attribute of the key's bucket or, if that is empty, of the next one that is not; null for none.
    OvXMLNode* PlaceFor(unsigned nHash) const;
    // The attribute goes, or went, before that one; it is about to leave its place.
    void Add(OvXMLAttribute* pAttribute, const OvXMLNode* pBefore);
    void Remove(OvXMLAttribute* pAttribute);

private:
    // Not the hash of the order: names can be chosen to share that.
    struct Hash {
        using is_transparent = void;
        size_t operator()(const OvXMLAttribute::Key& key) const;
        size_t operator()(const OvXMLAttribute* pAttribute) const { return (*this)(pAttribute->GetKey()); }
    };
    struct Equal {
        using is_transparent = void;
        bool operator()(const OvXMLAttribute* p, const OvXMLAttribute* pOther) const { return p == pOther; }
        bool operator()(const OvXMLAttribute::Key& key, const OvXMLAttribute* p) const { return key == p->GetKey(); }
        bool operator()(const OvXMLAttribute* p, const OvXMLAttribute::Key& key) const { return key == p->GetKey(); }
    };

    std::unordered_set<OvXMLAttribute*, Hash, Equal> m_attributes;
    std::array<OvXMLAttribute*, kBuckets> m_pFirsts{};
};
