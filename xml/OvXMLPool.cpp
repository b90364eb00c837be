#include "xml/OvXMLPool.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstdlib>
#include <utility>

namespace {

constexpr size_t kFirstBlock = 2048;
constexpr size_t kLargestBlock = 256 * 1024; // a node's distance from its block's start must fit m_nPoolOffset
constexpr size_t kMallocOverhead = 16;       // so that blocks fill malloc's own units
constexpr unsigned kOffsetMask = (1U << 18) - 1;
static_assert(kLargestBlock / 8 <= kOffsetMask);
constexpr size_t kLongestText = INT_MAX / 2; // a name and its value together

std::atomic<OvXMLPool::Source> g_source{ &std::malloc };

} // namespace

// Stands at the front of every block.
struct OvXMLPool::Block {
    OvXMLPool* pPool;
    Block* pNext; // the blocks are freed in the order they were made: so malloc can give them back in one piece
    size_t nSize;
};

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
    const bool bLarge = nSize > kLargestBlock / 4; // gets a block of its own, and the present one goes on being filled
    const size_t nBlock = bLarge ? nSize + sizeof(Block) : m_nNextBlock - kMallocOverhead;
    Block* pBlock = NewBlock(std::max(nBlock, nSize + sizeof(Block)));
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

template <class Node>
Node* OvXMLPool::Add(OvXMLElement* pParent, std::string_view name, size_t nValue)
{
    if (name.size() > kLongestText || nValue > kLongestText - name.size())
        AfxThrowMemoryException();
    char* p = Allocate(sizeof(Node));
    const auto* pBlock = reinterpret_cast<const char*>(m_pLastBlock);
    char* pText = name.size() + nValue > 0 ? Allocate(name.size() + nValue) : nullptr;
    auto* pNode = ::new (p) Node(OvXMLNode::Pooled(), pParent);
    pNode->m_nPoolOffset = static_cast<unsigned>((p - pBlock) / 8) & kOffsetMask;
    pNode->m_pText = pText;
    pNode->m_nName = static_cast<unsigned>(name.size());
    std::copy(name.begin(), name.end(), pText);
    // Nobody else knows the tree yet.
    m_nNodes.store(m_nNodes.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    return pNode;
}

OvXMLElement* OvXMLPool::AddRoot(Building pPool, OvXMLElement* pParent, std::string_view name)
{
    OvXMLElement* pRoot = pPool->AddElement(pParent, name);
    pPool->m_pRoot = pRoot;
    (void)pPool.release(); // the root's life keeps it
    return pRoot;
}

OvXMLElement* OvXMLPool::AddElement(OvXMLElement* pParent, std::string_view name)
{
    return Add<OvXMLElement>(pParent, name, 0);
}

OvXMLAttribute* OvXMLPool::AddAttribute(OvXMLElement* pParent, std::string_view name, std::string_view value)
{
    char* pValue = nullptr;
    OvXMLAttribute* pAttribute = AddAttribute(pParent, name, value.size(), pValue);
    std::copy(value.begin(), value.end(), pValue);
    pAttribute->m_nValue = static_cast<unsigned>(value.size());
    return pAttribute;
}

OvXMLAttribute* OvXMLPool::AddAttribute(OvXMLElement* pParent, std::string_view name, size_t nValue, char*& pValue)
{
    auto* pAttribute = Add<OvXMLAttribute>(pParent, name, nValue);
    pValue = const_cast<char*>(pAttribute->m_pText) + name.size();
    return pAttribute;
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

OvXMLPool* OvXMLPool::Of(const OvXMLNode* pNode)
{
    if (pNode->m_nPoolOffset == 0)
        return nullptr;
    return reinterpret_cast<const Block*>(reinterpret_cast<const char*>(pNode) - size_t{ pNode->m_nPoolOffset } * 8)
        ->pPool;
}

void OvXMLPool::Untie(const OvXMLNode* pNode)
{
    if (OvXMLPool* pPool = Of(pNode))
        pPool->m_bUntied.store(true, std::memory_order_relaxed);
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
