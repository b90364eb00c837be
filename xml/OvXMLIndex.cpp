#include "xml/OvXMLIndex.h"

#include <cstdint>

namespace {

// Differs from run to run, so that nobody can prepare names that meet in one slot.
std::uint64_t HashSeed()
{
    static const char place = 0;
    static const std::uint64_t nSeed =
        reinterpret_cast<std::uintptr_t>(&place) ^ reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)) << 20;
    return nSeed;
}

} // namespace

size_t OvXMLIndex::Hash::operator()(const OvXMLAttribute::Key& key) const
{
    std::uint64_t nHash = HashSeed();
    for (size_t i = 0; i < key.text.size(); i++) {
        nHash = (nHash ^ static_cast<unsigned char>(key.At(i))) * 0x9E3779B97F4A7C15U;
        nHash ^= nHash >> 29;
    }
    return nHash;
}

OvXMLAttribute* OvXMLIndex::Find(const OvXMLAttribute::Key& key) const
{
    const auto place = m_attributes.find(key);
    return place == m_attributes.end() ? nullptr : *place;
}

OvXMLNode* OvXMLIndex::PlaceFor(unsigned nHash) const
{
    for (unsigned i = nHash % kBuckets; i < kBuckets; i++) {
        if (m_pFirsts[i])
            return m_pFirsts[i];
    }
    return nullptr;
}

void OvXMLIndex::Add(OvXMLAttribute* pAttribute, const OvXMLNode* pBefore)
{
    m_attributes.insert(pAttribute);
    OvXMLAttribute*& pFirst = m_pFirsts[pAttribute->m_nBucket];
    if (!pFirst || pBefore == pFirst)
        pFirst = pAttribute;
}

void OvXMLIndex::Remove(OvXMLAttribute* pAttribute)
{
    m_attributes.erase(pAttribute);
    OvXMLAttribute*& pFirst = m_pFirsts[pAttribute->m_nBucket];
    if (pFirst != pAttribute)
        return;
    OvXMLAttribute* pNext = pAttribute->Next();
    pFirst = pNext && pNext->m_nBucket == pAttribute->m_nBucket ? pNext : nullptr;
}
