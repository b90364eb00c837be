// Copying, comparing and moving whole trees: along the trees' own chains, so that depth costs no stack.
#include "xml/OvXML.h"

#include <memory>

#include "xml/OvXMLChain.h"

// Copies value and attributes to an element of the pool that has neither.
void OvXMLElement::CopyAttributesTo(OvXMLElement* pCopy, OvXMLPool& pool) const
{
    for (OvXMLAttribute* p = FirstAttribute(); p; p = p->Next())
        pCopy->StoreNewLowered(pool.AddAttribute(pCopy, p->Name(), p->Value()));
    pool.SetValue(pCopy, Value());
}

OvXMLElement* OvXMLElement::Clone(OvXMLElement* pParent)
{
    std::unique_ptr<OvXMLElement> pRoot(OvXMLPool::AddRoot(OvXMLPool::Create(), pParent, Name()));
    OvXMLPool& pool = *OvXMLPool::Of(pRoot.get());
    const OvXMLElement* pSource = this;
    OvXMLElement* pCopy = pRoot.get();
    for (;;) {
        pSource->CopyAttributesTo(pCopy, pool);
        if (pSource->First()) {
            pSource = pSource->First();
        } else {
            while (pSource != this && !pSource->Next()) {
                pSource = pSource->Holder();
                pCopy = pCopy->m_pParent;
            }
            if (pSource == this)
                return pRoot.release();
            pSource = pSource->Next();
            pCopy = pCopy->m_pParent;
        }
        OvXMLElement* pChild = pool.AddElement(pCopy, pSource->Name());
        pCopy->Append(pChild);
        pCopy = pChild;
    }
}

bool OvXMLElement::EqualsButChildren(const OvXMLElement* pOther) const
{
    if (m_nAttributes != pOther->m_nAttributes || m_nElements != pOther->m_nElements || Name() != pOther->Name() ||
        Value() != pOther->Value())
        return false;
    for (OvXMLAttribute* p = FirstAttribute(); p; p = p->Next()) {
        if (!p->Equals(pOther->Find({ p->Name(), OvXMLAttribute::Key::Form::Lowered })))
            return false;
    }
    return true;
}

BOOL OvXMLElement::Equals(OvXMLElement* pOther) const
{
    if (!pOther)
        return FALSE;
    if (pOther == this)
        return TRUE;
    const OvXMLElement* p = this;
    const OvXMLElement* pPartner = pOther;
    while (p->EqualsButChildren(pPartner)) {
        if (p->First()) {
            p = p->First();
            pPartner = pPartner->First();
            continue;
        }
        while (p != this && !p->Next()) {
            p = p->Holder();
            pPartner = pPartner->Holder();
        }
        if (p == this)
            return TRUE;
        p = p->Next();
        pPartner = pPartner->Next();
    }
    return FALSE;
}

void OvXMLElement::TakeContents(OvXMLElement* pFrom, Displaced displaced)
{
    OvXMLPool::Untie(pFrom);
    // From the last on: each goes to the front of its bucket.
    while (pFrom->m_pFirstAttribute) {
        auto* pAttribute = static_cast<OvXMLAttribute*>(pFrom->m_pFirstAttribute->m_pPrevious);
        pFrom->TakeOut(pAttribute);
        pAttribute->m_pParent = this;
        OvXMLAttribute* pOld = StoreLowered(pAttribute);
        if (pOld && displaced == Displaced::Destroy)
            delete pOld;
        else if (pOld)
            OvXMLPool::Untie(pOld);
    }
    while (OvXMLElement* pChild = pFrom->First()) {
        pFrom->TakeOut(pChild);
        pChild->m_pParent = this;
        Append(pChild);
    }
}

void OvXMLElement::DropOpenChild(const OvXMLElement* pRoot, OvXMLElement* pOpen)
{
    if (!pOpen || pOpen == pRoot)
        return;
    while (pOpen->m_pParent != pRoot)
        pOpen = pOpen->m_pParent;
    delete pOpen;
}
