// An element's children.
#include "xml/OvXML.h"

#include <memory>

#include "xml/OvXMLChain.h"

OvXMLElement::OvXMLElement(OvXMLElement* pParent, const char* pszName) : OvXMLNode(Kind::Element, pParent)
{
    SetText(View(pszName), {});
}

OvXMLElement::~OvXMLElement()
{
    DeleteAllElements();
    DeleteAllAttributes();
    if (OvXMLElement* pHolder = Holder())
        pHolder->TakeOut(this);
}

OvXMLElement* OvXMLElement::AddElement(const char* pszName)
{
    auto* pChild = new OvXMLElement(this, pszName);
    Append(pChild);
    return pChild;
}

// Whether this element is the other one or lies beneath it.
bool OvXMLElement::IsWithin(const OvXMLElement* pElement) const
{
    const OvXMLElement* pAncestor = this;
    while (pAncestor && pAncestor != pElement)
        pAncestor = pAncestor->Holder();
    return pAncestor != nullptr;
}

OvXMLElement* OvXMLElement::AddElement(OvXMLElement* pChild)
{
    // An element without children lies around nothing; asking would make a chain built downward cost its square.
    if (!pChild || pChild->GetParent() || pChild == this || (pChild->m_pFirstElement && IsWithin(pChild)))
        return nullptr;
    pChild->Detach(); // an assignment can have taken its parent while a list holds it
    pChild->m_pParent = this;
    Append(pChild);
    return pChild;
}

OvXMLElement* OvXMLElement::Detach()
{
    if (OvXMLElement* pHolder = Holder())
        pHolder->RemoveElement(this);
    m_pParent = nullptr;
    return this;
}

void OvXMLElement::RemoveElement(OvXMLElement* pChild)
{
    if (!pChild || pChild->Holder() != this)
        return;
    TakeOut(pChild);
    OvXMLPool::Untie(this);
    OvXMLPool::Untie(pChild);
}

// From leaf to leaf along the tree's own chains, so that depth costs no stack.
void OvXMLElement::DeleteAllElements()
{
    OvXMLElement* pElement = this;
    while (m_pFirstElement) {
        OvXMLElement* pChild = pElement->First();
        if (!pChild) {
            OvXMLElement* pHolder = pElement->Holder();
            delete pElement;
            pElement = pHolder;
        } else if (const OvXMLPool* pPool = OvXMLPool::Of(pChild); pPool && pPool->IsWholeTree(pChild)) {
            delete pChild;
        } else {
            pElement = pChild;
        }
    }
}

OvXMLElement* OvXMLElement::GetNextElement(POSITION& position) const
{
    auto* pElement = reinterpret_cast<OvXMLElement*>(position);
    if (pElement)
        position = reinterpret_cast<POSITION>(pElement->m_pNext);
    return pElement;
}

OvXMLElement* OvXMLElement::GetElementByName(const char* pszName) const
{
    const std::string_view name = View(pszName);
    for (OvXMLElement* pChild = First(); pChild; pChild = pChild->Next()) {
        if (pChild->IsNamedLike(name))
            return pChild;
    }
    return nullptr;
}

OvXMLElement* OvXMLElement::GetElementByName(const char* pszName, BOOL bCreate)
{
    OvXMLElement* pChild = GetElementByName(pszName);
    return pChild || !bCreate ? pChild : AddElement(pszName);
}
