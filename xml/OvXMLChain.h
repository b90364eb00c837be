// The chains of children and attributes.
#pragma once

#include <memory>
#include <utility>

#include "xml/OvXMLKey.h"
#include "xml/OvXMLPool.h"

inline void OvXMLNode::Link(OvXMLNode*& pFirst, OvXMLNode* pBefore)
{
    m_bHeld = 1;
    m_pNext = pBefore;
    if (!pFirst) {
        pFirst = m_pPrevious = this;
        return;
    }
    OvXMLNode* pNextOrFirst = pBefore ? pBefore : pFirst; // whose m_pPrevious this becomes
    m_pPrevious = pNextOrFirst->m_pPrevious;
    pNextOrFirst->m_pPrevious = this;
    if (pBefore == pFirst)
        pFirst = this;
    else
        m_pPrevious->m_pNext = this;
}

inline void OvXMLNode::Unlink(OvXMLNode*& pFirst)
{
    OvXMLNode* pNextOrFirst = m_pNext ? m_pNext : pFirst;
    pNextOrFirst->m_pPrevious = m_pPrevious;
    if (pFirst == this)
        pFirst = m_pNext;
    else
        m_pPrevious->m_pNext = m_pNext;
    m_pNext = m_pPrevious = nullptr;
    m_bHeld = 0;
    m_bKeyAsWritten = 0;
    if (m_bApart) {
        const std::unique_ptr<Apart> pApart(std::exchange(m_pApart, nullptr));
        m_pParent = pApart->pParent;
        m_bApart = 0;
    }
}

inline void OvXMLElement::Append(OvXMLElement* pChild)
{
    if (OvXMLPool::Of(pChild) != OvXMLPool::Of(this))
        OvXMLPool::Untie(this);
    pChild->Link(m_pFirstElement, nullptr);
    m_nElements++;
}

inline void OvXMLElement::TakeOut(OvXMLElement* pChild)
{
    pChild->Unlink(m_pFirstElement);
    m_nElements--;
}
