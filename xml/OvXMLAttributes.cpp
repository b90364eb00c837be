// An element's map of attributes. The attributes are chained in the order in which they are visited; up to a number of
// them the chain is searched, beyond it an index beside it.
#include "xml/OvXML.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include <windows.h>

#include "xml/OvXMLChain.h"
#include "xml/OvXMLIndex.h"

namespace {

// Reads a decimal number like "%d": blanks, a sign, digits. Only the low 8 bits are wanted, so the rest may wrap.
// False, and nothing read, if there is none.
bool ReadComponent(const char*& psz, unsigned& nComponent)
{
    const char* p = psz;
    while (*p == ' ' || (*p >= '\t' && *p <= '\r'))
        p++;
    const bool bNegative = *p == '-';
    if (*p == '-' || *p == '+')
        p++;
    if (*p < '0' || *p > '9')
        return false;
    unsigned nNumber = 0;
    for (; *p >= '0' && *p <= '9'; p++)
        nNumber = nNumber * 10 + static_cast<unsigned>(*p - '0');
    nComponent = (bNegative ? 0 - nNumber : nNumber) & 0xFF;
    psz = p;
    return true;
}

} // namespace

OvXMLAttribute* OvXMLElement::Find(const OvXMLAttribute::Key& key) const
{
    if (m_pIndex)
        return m_pIndex->Find(key);
    for (OvXMLAttribute* p = FirstAttribute(); p; p = p->Next()) {
        if (p->m_nHash == key.nHash && p->GetKey() == key)
            return p;
    }
    return nullptr;
}

// Puts the attribute, whose key is set, into the chain and the index.
void OvXMLElement::Place(OvXMLAttribute* pAttribute, OvXMLNode* pBefore)
{
    if (m_pIndex)
        m_pIndex->Add(pAttribute, pBefore); // first, as it may want memory
    pAttribute->Link(m_pFirstAttribute, pBefore);
    m_nAttributes++;
    if (m_pIndex || m_nAttributes <= OvXMLIndex::kSearchedWithout)
        return;
    auto pIndex = std::make_unique<OvXMLIndex>();
    for (OvXMLAttribute* p = FirstAttribute(); p; p = p->Next())
        pIndex->Add(p, p->m_pNext);
    m_pIndex = pIndex.release();
    OvXMLPool::Untie(this);
}

OvXMLAttribute* OvXMLElement::Store(OvXMLAttribute* pAttribute, const OvXMLAttribute::Key& key)
{
    if (OvXMLPool::Of(pAttribute) != OvXMLPool::Of(this))
        OvXMLPool::Untie(this);
    pAttribute->m_nHash = key.nHash;
    pAttribute->m_nBucket = key.nHash % OvXMLIndex::kBuckets;
    pAttribute->m_bKeyAsWritten = key.form == OvXMLAttribute::Key::Form::Written;
    if (key.form == OvXMLAttribute::Key::Form::Apart) {
        pAttribute->m_pApart = new Apart{ this, this, key.ToString() };
        pAttribute->m_bApart = 1;
        OvXMLPool::Untie(pAttribute);
    }
    // The place of a new one is at the front of its bucket.
    OvXMLAttribute* pOld = nullptr;
    OvXMLNode* pBefore = nullptr;
    if (m_pIndex) {
        pOld = m_pIndex->Find(key);
        pBefore = m_pIndex->PlaceFor(key.nHash);
    } else {
        OvXMLAttribute* p = FirstAttribute();
        while (p && p->m_nBucket < pAttribute->m_nBucket)
            p = p->Next();
        pBefore = p;
        for (; p && p->m_nBucket == pAttribute->m_nBucket && !pOld; p = p->Next())
            pOld = p->GetKey() == key ? p : nullptr;
    }
    if (pOld) {
        pBefore = pOld->m_pNext;
        TakeOut(pOld);
    }
    Place(pAttribute, pBefore);
    return pOld;
}

OvXMLAttribute* OvXMLElement::StoreLowered(OvXMLAttribute* pAttribute)
{
    const OvXMLAttribute::Key key(pAttribute->Name(), OvXMLAttribute::Key::Form::Lowered);
    if (std::ranges::all_of(key.text, [](char ch) { return static_cast<signed char>(ch) >= 0; }))
        return Store(pAttribute, key);
    std::string strKey(key.text);
    CharLowerBuffA(strKey.data(), static_cast<DWORD>(strKey.size()));
    if (strKey == key.ToString())
        return Store(pAttribute, key);
    return Store(pAttribute, { strKey, OvXMLAttribute::Key::Form::Apart });
}

void OvXMLElement::StoreNew(OvXMLAttribute* pAttribute, const OvXMLAttribute::Key& key)
{
    std::unique_ptr<OvXMLAttribute> pOwner(pAttribute); // the index may not get its memory
    delete Store(pAttribute, key);
    (void)pOwner.release();
}

void OvXMLElement::StoreNewLowered(OvXMLAttribute* pAttribute)
{
    std::unique_ptr<OvXMLAttribute> pOwner(pAttribute);
    delete StoreLowered(pAttribute);
    (void)pOwner.release();
}

void OvXMLElement::TakeOut(OvXMLAttribute* pAttribute)
{
    if (m_pIndex)
        m_pIndex->Remove(pAttribute);
    pAttribute->Unlink(m_pFirstAttribute);
    m_nAttributes--;
}

OvXMLAttribute* OvXMLElement::GetAttribute(const char* pszName) const
{
    return Find({ View(pszName), OvXMLAttribute::Key::Form::Lowered });
}

OvXMLAttribute* OvXMLElement::AddAttribute(const char* pszName, const char* pszValue)
{
    OvXMLAttribute* pAttribute = GetAttribute(pszName);
    if (!pAttribute) {
        auto pNew = std::make_unique<OvXMLAttribute>(this, pszName);
        pAttribute = pNew.release();
        StoreNew(pAttribute, { pAttribute->Name(), OvXMLAttribute::Key::Form::Lowered });
    }
    if (pszValue)
        pAttribute->SetValue(pszValue);
    return pAttribute;
}

OvXMLAttribute* OvXMLElement::AddAttribute(const char* pszName, int nValue)
{
    return AddAttribute(pszName, std::to_string(nValue).c_str());
}

OvXMLAttribute* OvXMLElement::AddAttribute(const char* pszName, unsigned long crValue)
{
    return AddAttribute(pszName, static_cast<COLORREF>(crValue));
}

OvXMLAttribute* OvXMLElement::AddAttribute(const char* pszName, COLORREF crValue)
{
    const auto component = [crValue](unsigned nShift) { return std::to_string((crValue >> nShift) & 0xFF); };
    return AddAttribute(pszName, (component(0) + ',' + component(8) + ',' + component(16)).c_str());
}

OvXMLAttribute* OvXMLElement::AddAttribute(OvXMLAttribute* pAttribute)
{
    if (!pAttribute || pAttribute->GetParent())
        return nullptr;
    if (OvXMLElement* pHolder = pAttribute->Holder()) { // an assignment took its parent while a map holds it
        pHolder->TakeOut(pAttribute);
        OvXMLPool::Untie(pHolder);
    }
    pAttribute->m_pParent = this;
    if (const OvXMLAttribute* pOld = Store(pAttribute, { pAttribute->Name(), OvXMLAttribute::Key::Form::Written }))
        OvXMLPool::Untie(pOld);
    return pAttribute;
}

POSITION OvXMLElement::GetAttributeIterator() const
{
    return m_pFirstAttribute ? BEFORE_START_POSITION : nullptr;
}

OvXMLAttribute* OvXMLElement::GetNextAttribute(POSITION& position) const
{
    OvXMLAttribute* pAttribute =
        position == BEFORE_START_POSITION ? FirstAttribute() : reinterpret_cast<OvXMLAttribute*>(position);
    position = pAttribute ? reinterpret_cast<POSITION>(pAttribute->m_pNext) : nullptr;
    return pAttribute;
}

CString OvXMLElement::GetAttributeValue(const char* pszName, const char* pszDefault) const
{
    const OvXMLAttribute* pAttribute = GetAttribute(pszName);
    return pAttribute ? pAttribute->GetValue() : CString(pszDefault);
}

int OvXMLElement::GetAttributeValueInt(const char* pszName, int nDefault) const
{
    const CString strValue = GetAttributeValue(pszName, nullptr);
    if (strValue.IsEmpty())
        return nDefault;
    const long nNumber = std::strtol(strValue, nullptr, 10);
    return static_cast<int>(std::clamp<long>(nNumber, INT_MIN, INT_MAX));
}

unsigned long OvXMLElement::GetAttributeValueColor(const char* pszName, unsigned long crDefault) const
{
    const CString strValue = GetAttributeValue(pszName, nullptr);
    if (strValue.IsEmpty())
        return crDefault;
    unsigned nComponents[3] = { LOBYTE(crDefault), LOBYTE(crDefault >> 8), LOBYTE(crDefault) };
    const char* psz = strValue;
    for (unsigned& nComponent : nComponents) {
        if (!ReadComponent(psz, nComponent) || *psz++ != ',')
            break;
    }
    return nComponents[0] | nComponents[1] << 8 | nComponents[2] << 16;
}

void OvXMLElement::RemoveAttribute(OvXMLAttribute* pAttribute)
{
    OvXMLAttribute* pFound = pAttribute ? Find({ pAttribute->Name(), OvXMLAttribute::Key::Form::Lowered }) : nullptr;
    if (!pFound)
        return;
    TakeOut(pFound);
    OvXMLPool::Untie(this);
    OvXMLPool::Untie(pFound);
}

void OvXMLElement::DeleteAttribute(const char* pszName)
{
    delete GetAttribute(pszName);
}

void OvXMLElement::DeleteAllAttributes()
{
    delete std::exchange(m_pIndex, nullptr);
    while (m_pFirstAttribute)
        delete m_pFirstAttribute;
}
