// Storing a tree in the framework's archive, and loading it.
//
// A node is its name and its value; an element is that, the number of its attributes, those, the number of its children
// and those. Types, parents and keys follow from the structure.
#include "xml/OvXML.h"

#include <memory>
#include <vector>

#include "xml/OvXMLChain.h"

namespace {

// By way of a string that the caller keeps, so that its buffer serves many texts.
void StoreText(CArchive& archive, std::string_view text, CString& strText)
{
    text.copy(strText.GetBufferSetLength(static_cast<int>(text.size())), text.size());
    archive << strText;
}

} // namespace

void OvXMLNode::Serialize(CArchive& archive)
{
    CString strText;
    if (archive.IsStoring()) {
        StoreText(archive, Name(), strText);
        StoreText(archive, Value(), strText);
        return;
    }
    archive >> strText;
    if (m_kind == Kind::Attribute)
        SetApart();
    SetText(View(strText), Value());
    archive >> strText;
    SetText(Name(), View(strText));
}

void OvXMLAttribute::Serialize(CArchive& archive)
{
    OvXMLNode::Serialize(archive);
}

// Builds the tree of one element record, whose name and value were read, in a pool of its own.
class OvXMLElement::Loader {
public:
    explicit Loader(CArchive& archive) : m_archive(archive) {}

    // What the archive throws goes through; the root, if there is one, then has those children that were complete.
    void Load()
    {
        try {
            Open({}, {});
            LoadAttributes();
            while (m_pOpen) {
                if (m_nMissing.back()-- > 0)
                    LoadChild();
                else
                    Close();
            }
        } catch (...) {
            DropOpenChild(m_pRoot.get(), m_pOpen);
            throw;
        }
    }
    OvXMLElement* Root() const { return m_pRoot.get(); }

private:
    void LoadChild()
    {
        m_archive >> m_strName >> m_strValue;
        Open(View(m_strName), View(m_strValue));
        LoadAttributes();
    }

    // The open element's attributes, and how many children it has.
    void LoadAttributes()
    {
        for (DWORD nAttributes = m_archive.ReadCount(); nAttributes > 0; nAttributes--) {
            m_archive >> m_strName >> m_strValue;
            m_pOpen->StoreNewLowered(m_pPool->AddAttribute(m_pOpen, View(m_strName), View(m_strValue)));
        }
        m_nMissing.back() = m_archive.ReadCount();
    }

    void Open(std::string_view name, std::string_view value)
    {
        m_nMissing.push_back(0);
        if (!m_pRoot) {
            m_pRoot.reset(OvXMLPool::AddRoot(OvXMLPool::Create(), nullptr, name));
            m_pPool = OvXMLPool::Of(m_pRoot.get());
            m_pOpen = m_pRoot.get();
        } else {
            OvXMLElement* pChild = m_pPool->AddElement(m_pOpen, name);
            m_pOpen->Append(pChild);
            m_pOpen = pChild;
        }
        m_pPool->SetValue(m_pOpen, value);
    }

    void Close()
    {
        m_nMissing.pop_back();
        m_pOpen = m_pOpen->m_pParent;
    }

    CArchive& m_archive;
    std::unique_ptr<OvXMLElement> m_pRoot;
    OvXMLPool* m_pPool = nullptr;    // the root's
    OvXMLElement* m_pOpen = nullptr; // the element that is being loaded, innermost
    std::vector<DWORD> m_nMissing;   // children of the open elements that are still to come, innermost last
    CString m_strName;
    CString m_strValue;
};

void OvXMLElement::Serialize(CArchive& archive)
{
    if (archive.IsStoring()) {
        Store(archive);
        return;
    }
    OvXMLNode::Serialize(archive);
    Loader loader(archive);
    try {
        loader.Load();
    } catch (...) {
        if (loader.Root())
            TakeContents(loader.Root(), Displaced::LeaveToCaller);
        throw;
    }
    TakeContents(loader.Root(), Displaced::LeaveToCaller);
}

void OvXMLElement::Store(CArchive& archive)
{
    OvXMLElement* p = this;
    for (;;) {
        p->OvXMLNode::Serialize(archive);
        archive.WriteCount(p->m_nAttributes);
        for (OvXMLAttribute* pAttribute = p->FirstAttribute(); pAttribute; pAttribute = pAttribute->Next())
            pAttribute->Serialize(archive);
        archive.WriteCount(p->m_nElements);
        if (p->First()) {
            p = p->First();
            continue;
        }
        while (p != this && !p->Next())
            p = p->Holder();
        if (p == this)
            return;
        p = p->Next();
    }
}
