#include "xml/OvXMLPool.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <utility>

#include "xml/OvXMLChain.h"

#if __has_include(<sys/mman.h>)
#include <sys/mman.h>
#endif

namespace {

constexpr size_t kFirstBlock = 2048;
constexpr size_t kLargestBlock = 2 * 1024 * 1024; // as large as a huge page, and no larger than m_nPoolOffset can tell
constexpr size_t kLongestInBlock = 64 * 1024;     // what is longer gets a block of its own
constexpr size_t kMallocOverhead = 16;            // so that blocks fill malloc's own units

// A document of megabytes would spend most of its time waiting for the system to bring in small pages one by one.
void* AllocateBlock(size_t nSize)
{
    if (nSize != kLargestBlock)
        return std::malloc(nSize);
    void* pMemory = std::aligned_alloc(kLargestBlock, nSize);
#ifdef MADV_HUGEPAGE
    if (pMemory)
        ::madvise(pMemory, nSize, MADV_HUGEPAGE); // a wish; without it all works as well
#endif
    return pMemory;
}

std::atomic<OvXMLPool::Source> g_source{ &AllocateBlock };

} // namespace

OvXMLPool::Source OvXMLPool::ExchangeSource(Source source)
{
    return g_source.exchange(source);
}

OvXMLPool::Block* OvXMLPool::NewBlock(size_t nSize)
{
    void* pMemory = g_source.load(std::memory_order_relaxed)(nSize);
    if (!pMemory)
        AfxThrowMemoryException();
    return new (pMemory) Block{ nullptr, nullptr, nSize };
}

OvXMLPool::Building OvXMLPool::Create()
{
    Block* pBlock = NewBlock(kFirstBlock - kMallocOverhead);
    auto* pPool = new (pBlock + 1) OvXMLPool(pBlock);
    pBlock->pPool = pPool;
    return Building(pPool);
}

OvXMLPool::OvXMLPool(Block* pBlock)
    : m_pFirstBlock(pBlock), m_pLastBlock(pBlock), m_pFree(reinterpret_cast<char*>(this + 1)),
      m_pLimit(reinterpret_cast<char*>(pBlock) + pBlock->nSize), m_nNextBlock(kFirstBlock * 2)
{}

void OvXMLPool::Free()
{
    for (Block* pBlock = m_pFirstBlock; pBlock;)
        std::free(std::exchange(pBlock, pBlock->pNext));
}

char* OvXMLPool::AllocateElsewhere(size_t nSize)
{
    static_assert((kLargestBlock - 1) / kUnit <= kLargestOffset);
    const bool bLarge = nSize > kLongestInBlock; // gets a block of its own, and the present one goes on being filled
    const size_t nWanted = m_nNextBlock == kLargestBlock ? kLargestBlock : m_nNextBlock - kMallocOverhead;
    Block* pBlock = NewBlock(bLarge ? nSize + sizeof(Block) : std::max(nWanted, nSize + sizeof(Block)));
    pBlock->pPool = this;
    pBlock->pNext = std::exchange(m_pLastBlock->pNext, pBlock);
    char* p = reinterpret_cast<char*>(pBlock + 1);
    if (bLarge)
        return p;
    m_pLastBlock = pBlock;
    m_pLast = p;
    m_pFree = p + nSize;
    m_pLimit = reinterpret_cast<char*>(pBlock) + pBlock->nSize;
    m_nNextBlock = std::min(m_nNextBlock * 2, kLargestBlock);
    return p;
}

// Apart from its node: it may have a block of its own, in which no node can lie.
char* OvXMLPool::AllocateLongText(std::string_view name, size_t nValue)
{
    if (name.size() > kLongestText || nValue > kLongestText - name.size())
        AfxThrowMemoryException();
    return Allocate(name.size() + nValue);
}

OvXMLElement* OvXMLPool::AddRoot(Building pPool, OvXMLElement* pParent, std::string_view name)
{
    OvXMLElement* pRoot = pPool->AddElement(pParent, name);
    pPool->m_pRoot = pRoot;
    (void)pPool.release(); // the root's life keeps it
    return pRoot;
}

void OvXMLPool::SetValue(OvXMLElement* pElement, std::string_view value)
{
    if (!value.empty())
        SetValueEnd(pElement, std::copy(value.begin(), value.end(), ExtendValue(pElement, value.size())));
}

char* OvXMLPool::ExtendValue(OvXMLElement* pElement, size_t nMore)
{
    const size_t nText = size_t{ pElement->m_nName } + pElement->m_nValue;
    if (nMore > kLongestText - nText)
        AfxThrowMemoryException();
    if (!pElement->m_bRoomToGrow || nText + nMore > std::bit_ceil(nText)) {
        // Most elements have one run of text: it gets what it needs. From the second on the room doubles.
        pElement->m_bRoomToGrow = pElement->m_nValue > 0;
        char* pText = Allocate(pElement->m_bRoomToGrow ? std::bit_ceil(nText + nMore) : nText + nMore);
        std::copy_n(pElement->m_pText, nText, pText);
        pElement->m_pText = pText;
    }
    return const_cast<char*>(pElement->m_pText) + nText;
}

void OvXMLPool::SetValueEnd(OvXMLNode* pNode, const char* pEnd)
{
    const auto nText = static_cast<size_t>(pEnd - pNode->m_pText);
    pNode->m_nValue = static_cast<unsigned>(nText) - pNode->m_nName;
    if (m_pLast == pNode->m_pText)
        m_pFree = m_pLast + RoundUp(pNode->m_bRoomToGrow ? std::bit_ceil(nText) : nText);
}

void OvXMLPool::Destroy(OvXMLNode* pNode)
{
    OvXMLElement* pElement = pNode->m_kind == OvXMLNode::Kind::Element ? static_cast<OvXMLElement*>(pNode) : nullptr;
    if (IsWholeTree(pNode)) {
        if (OvXMLElement* pHolder = pNode->Holder())
            pHolder->TakeOut(pElement);
        Free();
        return;
    }
    if (pElement)
        pElement->OvXMLElement::~OvXMLElement();
    else
        static_cast<OvXMLAttribute*>(pNode)->OvXMLAttribute::~OvXMLAttribute();
    if (m_nNodes.fetch_sub(1, std::memory_order_acq_rel) == 1)
        Free();
}
