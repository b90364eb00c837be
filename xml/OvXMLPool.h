// The memory of one tree that was read or cloned: nodes and texts lie one behind the other in a few blocks. Nothing is
// freed singly; the blocks go together, when the last node in them dies. A whole tree that nobody has taken apart goes
// at once, without a visit to its nodes.
#pragma once

#include <atomic>
#include <climits>
#include <cstddef>
#include <memory>
#include <string_view>

#include "xml/OvXML.h"
#include "xml/OvXMLText.h"

inline constexpr std::size_t kLongestText = INT_MAX / 2; // a node's name and value together, in bytes

class OvXMLPool {
public:
    // What a tree is being built with: frees everything unless the tree's root takes over.
    struct Abandon {
        void operator()(OvXMLPool* pPool) const { pPool->Free(); }
    };
    using Building = std::unique_ptr<OvXMLPool, Abandon>;
    static Building Create();

    OvXMLPool(const OvXMLPool&) = delete;
    OvXMLPool& operator=(const OvXMLPool&) = delete;

    // Nodes that no list or map holds yet. The root, and the pool with it, belongs to the caller from now on. Only
    // until the tree is handed out: afterwards the tree's parts may belong to different threads.
    static OvXMLElement* AddRoot(Building pPool, OvXMLElement* pParent, std::string_view name);
    OvXMLElement* AddElement(OvXMLElement* pParent, std::string_view name)
    {
        return Add<OvXMLElement>(pParent, name, 0);
    }
    OvXMLAttribute* AddAttribute(OvXMLElement* pParent, std::string_view name, std::string_view value)
    {
        auto* pAttribute = Add<OvXMLAttribute>(pParent, name, value.size());
        OvXMLText::CopyBytes(const_cast<char*>(pAttribute->m_pText) + name.size(), value.data(), value.size());
        pAttribute->m_nValue = static_cast<unsigned>(value.size());
        return pAttribute;
    }
    // An attribute whose value is still to be written to the place given, at most nValue bytes, and ended by
    // SetValueEnd.
    OvXMLAttribute* AddAttribute(OvXMLElement* pParent, std::string_view name, size_t nValue, char*& pValue)
    {
        auto* pAttribute = Add<OvXMLAttribute>(pParent, name, nValue);
        pValue = const_cast<char*>(pAttribute->m_pText) + name.size();
        return pAttribute;
    }
    void SetValue(OvXMLElement* pElement, std::string_view value); // for one that has none
    // Makes the room behind an element's value at least nMore bytes and returns the value's end. nMore may be more than
    // is used in the end.
    char* ExtendValue(OvXMLElement* pElement, size_t nMore);
    // The value ends here. What room is left behind it is used for what comes next, if nothing came since.
    void SetValueEnd(OvXMLNode* pNode, const char* pEnd);

    // The pool a node lies in, or null.
    static OvXMLPool* Of(const OvXMLNode* pNode)
    {
        if (pNode->m_nPoolOffset == 0)
            return nullptr;
        const auto* pBytes = reinterpret_cast<const char*>(pNode) - size_t{ pNode->m_nPoolOffset } * kUnit;
        return reinterpret_cast<const Block*>(pBytes)->pPool;
    }
    // The node's list, map, text or key is no longer the pool's matter alone: its tree must be taken down node by node.
    // Nothing for a node outside a pool.
    static void Untie(const OvXMLNode* pNode)
    {
        if (OvXMLPool* pPool = Of(pNode))
            pPool->m_bUntied.store(true, std::memory_order_relaxed);
    }
    // Ends a node's life, and the pool's with the last.
    void Destroy(OvXMLNode* pNode);
    // Whether destroying this node frees a whole tree at once.
    bool IsWholeTree(const OvXMLNode* pNode) const
    {
        return m_pRoot == pNode && !m_bUntied.load(std::memory_order_relaxed);
    }

    // Where blocks come from; `malloc` unless a test exchanged it. Returns the one before.
    using Source = void* (*)(size_t);
    static Source ExchangeSource(Source source);

private:
    // Stands at the front of every block.
    struct Block {
        OvXMLPool* pPool;
        Block* pNext; // the blocks are freed in the order they were made: so malloc can give them back in one piece
        size_t nSize;
    };
    static constexpr size_t kUnit = 8; // everything begins at a multiple of it
    static constexpr unsigned kLargestOffset = (1U << 18) - 1;
    static constexpr size_t kSmallText = 1024;

    explicit OvXMLPool(Block* pBlock);
    ~OvXMLPool() = default;
    void Free();

    static Block* NewBlock(size_t nSize);
    static size_t RoundUp(size_t nSize) { return (nSize + kUnit - 1) & ~(kUnit - 1); }

    char* Allocate(size_t nSize)
    {
        nSize = RoundUp(nSize);
        if (nSize > static_cast<size_t>(m_pLimit - m_pFree))
            return AllocateElsewhere(nSize);
        m_pLast = m_pFree;
        m_pFree += nSize;
        return m_pLast;
    }
    char* AllocateElsewhere(size_t nSize);
    char* AllocateLongText(std::string_view name, size_t nValue);

    template <class Node>
    Node* Add(OvXMLElement* pParent, std::string_view name, size_t nValue)
    {
        const size_t nText = name.size() + nValue;
        const bool bShort = nText < kSmallText; // the text then lies behind the node
        char* pText = bShort ? nullptr : AllocateLongText(name, nValue);
        char* p = Allocate(sizeof(Node) + (bShort ? nText : 0));
        auto* pNode = ::new (p) Node(OvXMLNode::Pooled(), pParent);
        const auto nOffset = static_cast<size_t>(p - reinterpret_cast<const char*>(m_pLastBlock)) / kUnit;
        pNode->m_nPoolOffset = static_cast<unsigned>(nOffset) & kLargestOffset;
        pNode->m_pText = bShort ? m_pLast = p + sizeof(Node) : pText;
        pNode->m_nName = static_cast<unsigned>(name.size());
        OvXMLText::CopyBytes(const_cast<char*>(pNode->m_pText), name.data(), name.size());
        // Nobody else knows the tree yet.
        m_nNodes.store(m_nNodes.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
        return pNode;
    }

    Block* const m_pFirstBlock; // this object lies in it
    Block* m_pLastBlock;        // nodes and short texts go here
    char* m_pLast = nullptr;    // what was given out last, in the last block
    char* m_pFree;
    char* m_pLimit;
    size_t m_nNextBlock; // bytes
    const OvXMLElement* m_pRoot = nullptr;
    std::atomic<size_t> m_nNodes{ 0 };
    std::atomic<bool> m_bUntied{ false };
};
