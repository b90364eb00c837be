// A node's fields: where it belongs, its name and value.
#include "xml/OvXML.h"

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include <windows.h>

#include "xml/OvXMLChain.h"
#include "xml/OvXMLKey.h"
#include "xml/OvXMLPool.h"

namespace {

bool IsAscii(std::string_view text)
{
    for (const char ch : text) {
        if (static_cast<signed char>(ch) < 0)
            return false;
    }
    return true;
}

} // namespace

OvXMLNode::OvXMLNode(OvXMLElement* pParent, const char* pszName) : OvXMLNode(Kind::Plain, pParent)
{
    SetText(View(pszName), {});
}

// What is copied out of an element or attribute is a plain node; OvXMLAttribute says so where it is not.
OvXMLNode::OvXMLNode(const OvXMLNode& node) : OvXMLNode(Kind::Plain, node.GetParent())
{
    m_nType = node.m_nType;
    SetText(node.Name(), node.Value());
}

OvXMLNode& OvXMLNode::operator=(const OvXMLNode& node)
{
    if (this == &node)
        return *this;
    OvXMLElement* pParent = node.GetParent();
    SetApart();
    (m_bApart ? m_pApart->pParent : m_pParent) = pParent;
    m_nType = node.m_nType;
    SetText(node.Name(), node.Value());
    return *this;
}

OvXMLNode::~OvXMLNode()
{
    FreeText();
    if (m_bApart)
        delete m_pApart;
}

void OvXMLNode::operator delete(OvXMLNode* pNode, std::destroying_delete_t)
{
    if (OvXMLPool* pPool = OvXMLPool::Of(pNode)) {
        pPool->Destroy(pNode);
        return;
    }
    void* pMemory = dynamic_cast<void*>(pNode); // where the whole object begins, whatever was derived from it
    pNode->~OvXMLNode();
    ::operator delete(pMemory);
}

void OvXMLNode::operator delete(void* pMemory)
{
    ::operator delete(pMemory);
}

void* OvXMLNode::operator new(size_t nSize)
{
    return ::operator new(nSize);
}

OvXMLElement* OvXMLNode::AsElement() const
{
    const bool bElement = m_kind == Kind::Element && m_nType == static_cast<unsigned>(Kind::Element);
    return bElement ? static_cast<OvXMLElement*>(AsNode()) : nullptr;
}

OvXMLAttribute* OvXMLNode::AsAttribute() const
{
    const bool bAttribute = m_kind == Kind::Attribute && m_nType == static_cast<unsigned>(Kind::Attribute);
    return bAttribute ? static_cast<OvXMLAttribute*>(AsNode()) : nullptr;
}

void OvXMLNode::SetName(const char* pszName)
{
    if (m_kind == Kind::Attribute)
        SetApart();
    SetText(View(pszName), Value());
}

void OvXMLNode::SetValue(const char* pszValue)
{
    SetText(Name(), View(pszValue));
}

OvXMLElement* OvXMLNode::ParentApart() const
{
    return m_pApart->pParent;
}

OvXMLElement* OvXMLNode::Holder() const
{
    if (!m_bHeld)
        return nullptr;
    return m_bApart ? m_pApart->pHolder : m_pParent;
}

void OvXMLNode::SetApart()
{
    if (!m_bHeld || m_bApart)
        return;
    std::string strKey;
    if (m_kind == Kind::Attribute)
        strKey = static_cast<OvXMLAttribute*>(this)->GetKey().ToString();
    m_pApart = new Apart{ m_pParent, m_pParent, std::move(strKey) };
    m_bApart = 1;
    OvXMLPool::Untie(this);
}

// The texts may be the node's own.
void OvXMLNode::SetText(std::string_view name, std::string_view value)
{
    if (name.size() > kLongestText || value.size() > kLongestText - name.size())
        AfxThrowMemoryException();
    char* pText = nullptr;
    if (const size_t nText = name.size() + value.size(); nText > 0) {
        pText = static_cast<char*>(std::malloc(nText));
        if (!pText)
            AfxThrowMemoryException();
        value.copy(pText + name.copy(pText, name.size()), value.size());
        OvXMLPool::Untie(this);
    }
    FreeText();
    m_pText = pText;
    m_bOwnsText = pText != nullptr;
    m_bRoomToGrow = 0;
    m_nName = static_cast<unsigned>(name.size());
    m_nValue = static_cast<unsigned>(value.size());
}

void OvXMLNode::FreeText()
{
    if (m_bOwnsText)
        std::free(const_cast<char*>(m_pText));
}

bool OvXMLNode::IsNamedLike(std::string_view name) const
{
    const std::string_view own = Name();
    if (own.size() != name.size())
        return false;
    for (size_t i = 0; i < name.size(); i++) {
        if (OvXMLAttribute::Key::Lower(own[i]) != OvXMLAttribute::Key::Lower(name[i])) {
            if (IsAscii(own) || IsAscii(name))
                return false;
            break;
        }
    }
    if (IsAscii(own))
        return true;
    // Beyond ASCII the code page knows what is a letter and what the second byte of a character.
    std::string strOwn(own);
    std::string strName(name);
    CharLowerBuffA(strOwn.data(), static_cast<DWORD>(strOwn.size()));
    CharLowerBuffA(strName.data(), static_cast<DWORD>(strName.size()));
    return strOwn == strName;
}

OvXMLAttribute::OvXMLAttribute(OvXMLElement* pParent, const char* pszName) : OvXMLNode(Kind::Attribute, pParent)
{
    SetText(View(pszName), {});
}

OvXMLAttribute::OvXMLAttribute(const OvXMLAttribute& attribute) : OvXMLNode(attribute)
{
    m_kind = Kind::Attribute;
}

OvXMLAttribute::~OvXMLAttribute()
{
    if (OvXMLElement* pHolder = Holder())
        pHolder->TakeOut(this);
}

OvXMLAttribute* OvXMLAttribute::Clone(OvXMLElement* pParent)
{
    auto pClone = std::make_unique<OvXMLAttribute>(pParent);
    pClone->SetText(Name(), Value());
    return pClone.release();
}

BOOL OvXMLAttribute::Equals(OvXMLAttribute* pOther) const
{
    return pOther && Name() == pOther->Name() && Value() == pOther->Value();
}
