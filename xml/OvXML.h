// The XML document tree: elements with attributes, child elements and text. A document is its root element, and who
// holds the root owns the whole tree. Used by everything that reads a skin, and by programs of their own.
//
//     OvXMLElement* pRoot = OvXMLElement::FromString(pszText, TRUE);
//     if (!pRoot)
//         return FALSE; // not a document; there is no further word on it
//     const CString strTitle = pRoot->GetAttributeValue("title", "untitled");
//     delete pRoot;
//
// Text is bytes of the process's code page; a null text counts as empty. Text may hold zero bytes (a reference &#0; or
// an archive brings them in); what takes a plain text ends at the first.
//
// Ownership. An element owns the children in its list and the attributes in its map. A node made with `new` belongs to
// its maker until it is added; a node taken out belongs to who took it. The parent pointer says whom a node was made
// for: it is set before a node is added and may stay after it was removed, and nothing follows it except as told below.
// A node that dies leaves the list or map that holds it. A node must be alive to be passed in.
//
// Threads. A tree belongs to one thread at a time; different trees (a detached part is one) to any threads at once.
//
// Cost. Depth costs heap, never stack. Reading, writing, copying and destroying take time linear in the size, finding
// an attribute a constant time, finding a child by name a walk over the children. A tree that was read or cloned keeps
// its nodes and texts in blocks that are freed when the last of its nodes dies.
//
// Nothing throws, except CMemoryException* when memory runs out and what an archive throws; FromString alone catches.
#pragma once

#include <new>
#include <string_view>

#include <afx.h>
#include <afxtempl.h>

#include "look/PelkGuiApi.h"

class OvXMLAttribute;
class OvXMLElement;
class OvXMLIndex;
class OvXMLPool;

// For documents that refer to a schema: the attribute that names a schema file, the namespace that this attribute's
// prefix "xsi" stands for, and the namespace of schemas themselves. Nothing here reads them.
inline constexpr char OVXML_SCHEMA_LOCATION_ATTRIBUTE[] = "xsi:noNamespaceSchemaLocation";
inline constexpr char OVXML_SCHEMA_INSTANCE_NAMESPACE[] = "http://www.w3.org/2001/XMLSchema-instance";
inline constexpr char OVXML_SCHEMA_NAMESPACE[] = "http://www.w3.org/2001/XMLSchema";

// What elements and attributes share: a type, a parent, a name and a value.
class PELKGUI_API OvXMLNode {
public:
    OvXMLNode(OvXMLElement* pParent = nullptr, const char* pszName = nullptr);
    // Copy type, parent, name and value, and touch no list or map: the copy is in none, and the target of an assignment
    // stays where it is, under the key it has there.
    OvXMLNode(const OvXMLNode& node);
    OvXMLNode& operator=(const OvXMLNode& node);
    virtual ~OvXMLNode();
    // A node that was read or cloned lies in a block of its tree; the first `delete` tells it from one made with `new`.
    static void operator delete(OvXMLNode* pNode, std::destroying_delete_t);
    static void operator delete(void* pMemory);
    static void* operator new(size_t nSize);
    static void* operator new(size_t, void* pPlace) noexcept { return pPlace; }

    // 0 for a plain node, 1 for an element, 2 for an attribute.
    int GetType() const { return static_cast<int>(m_nType); }
    OvXMLNode* AsNode() const { return const_cast<OvXMLNode*>(this); }
    // This node as what its type says; null for another type, and for a plain node that only copied its type.
    OvXMLElement* AsElement() const;
    OvXMLAttribute* AsAttribute() const;
    OvXMLElement* GetParent() const { return m_bApart ? ParentApart() : m_pParent; }

    CString GetName() const { return ToCString(Name()); }
    // An attribute stays in its element's map under the key it was stored by.
    void SetName(const char* pszName);
    // An element's own text, an attribute's decoded value.
    CString GetValue() const { return ToCString(Value()); }
    void SetValue(const char* pszValue);

    // Whether the name equals, ignoring case in the process's code page. FALSE on a null object.
    BOOL IsNamed(const char* pszName) const;

    // Takes the node out of its element and destroys it with all it owns. Nothing on a null object.
    void Delete();

    // Appends the text with ", &, ', < and > as named references and every byte from 0x80 up as a numeric one.
    static void ValueToString(const char* pszValue, CString& strOut);
    // Decodes at most nLength bytes: runs of white space become one space (none at the front), the references &amp;
    // &lt; &gt; &quot; &apos; &nbsp; and &#N; become their byte (N's low 8 bits). An unknown name stays as it is, an
    // "&" at the end goes, a number without ";" takes everything up to the next one with it. The cursor moves behind
    // what was decoded: that is the run's end, unless a "#" without a decimal digit behind it stops the decoding.
    static CString StringToValue(const char*& pszCursor, int nLength);
    // Trims the text, makes one space of every run of blanks and control characters, and drops every byte that is no
    // letter, digit, byte from 192 up or one of "'-&/,;#(). A space may remain at the end.
    static void UniformString(CString& strText);

protected:
    // Skip white space (space, tab, CR, LF), then take the token, or a name of letters, digits, ":", "_" and "-". They
    // fail at the end of the text and where something else stands, and then leave the cursor. A text that ends within
    // the token counts as matched.
    static int ParseMatch(const char*& pszCursor, const char* pszToken);
    static int ParseIdentifier(const char*& pszCursor, CString& strName);

    // Stores or loads name and value.
    void Serialize(CArchive& archive);

private:
    friend class OvXMLElement;
    friend class OvXMLAttribute;
    friend class OvXMLIndex;
    friend class OvXMLPool;

    enum class Kind : unsigned { Plain, Element, Attribute };
    struct Apart;     // where a node in a list or map differs from what its parent and name tell
    struct Pooled {}; // marks the constructors of nodes in a pool, which gives them their text

    OvXMLNode(Kind kind, OvXMLElement* pParent) : m_pParent(pParent), m_nType(static_cast<unsigned>(kind)), m_kind(kind)
    {}

    std::string_view Name() const { return { m_pText, m_nName }; }
    std::string_view Value() const { return { m_pText + m_nName, m_nValue }; }
    static CString ToCString(std::string_view text) { return { text.data(), static_cast<int>(text.size()) }; }
    static std::string_view View(const char* psz) { return psz ? psz : std::string_view(); }
    static std::string_view View(const CString& str) { return { str, static_cast<size_t>(str.GetLength()) }; }

    OvXMLElement* ParentApart() const;
    // The element whose list or map holds this node; null when none does.
    OvXMLElement* Holder() const;
    // Keeps holder and key by themselves, as the parent or the name of a held node is about to change.
    void SetApart();
    void SetText(std::string_view name, std::string_view value);
    void FreeText();
    bool IsNamedLike(std::string_view name) const;

    // Held nodes are chained; the first one's m_pPrevious is the last. A null pBefore stands for the end.
    void Link(OvXMLNode*& pFirst, OvXMLNode* pBefore);
    void Unlink(OvXMLNode*& pFirst);

    union {
        OvXMLElement* m_pParent = nullptr; // borrowed
        Apart* m_pApart;                   // owned, with m_bApart
    };
    OvXMLNode* m_pNext = nullptr;
    OvXMLNode* m_pPrevious = nullptr;
    const char* m_pText = nullptr; // the name, then the value; owned with m_bOwnsText, else the pool's
    unsigned m_nName = 0;          // bytes
    unsigned m_nValue = 0;         // bytes
    unsigned m_nHash = 0;          // of the key, for an attribute in a map
    unsigned m_nType : 2 = 0;      // what GetType says
    Kind m_kind : 2 = Kind::Plain; // what the node is
    unsigned m_bHeld : 1 = 0;      // in a list or map
    unsigned m_bApart : 1 = 0;
    unsigned m_bOwnsText : 1 = 0;
    unsigned m_nBucket : 5 = 0;       // m_nHash mod 17
    unsigned m_bKeyAsWritten : 1 = 0; // the key is the name itself, not its lower case
    unsigned m_bRoomToGrow : 1 = 0;   // the text's block ends at the next power of two
    unsigned m_nPoolOffset : 18 = 0;  // from the pool's block, in units of 8 bytes; 0: not in a pool
};

// One name="value" pair of an element.
class PELKGUI_API OvXMLAttribute : public OvXMLNode {
public:
    // Constructing puts it into no map.
    OvXMLAttribute(OvXMLElement* pParent = nullptr, const char* pszName = nullptr);
    OvXMLAttribute(const OvXMLAttribute& attribute);
    OvXMLAttribute& operator=(const OvXMLAttribute& attribute) = default;
    ~OvXMLAttribute() override;

    // A copy with that parent pointer, in no map. The caller owns it.
    OvXMLAttribute* Clone(OvXMLElement* pParent);
    // Whether name and value are the same bytes. FALSE for null.
    BOOL Equals(OvXMLAttribute* pOther) const;

    // Reads name="value" or name='value' and moves the cursor behind it. 0: there is no such pair; the cursor is then
    // anywhere and the name may have changed.
    int ParseString(const char*& pszCursor);
    // Appends name="value".
    void ToString(CString& strOut);
    // Stores or loads name and value, by the archive's direction.
    void Serialize(CArchive& archive);

private:
    friend class OvXMLNode;
    friend class OvXMLElement;
    friend class OvXMLIndex;
    friend class OvXMLPool;
    struct Key;

    OvXMLAttribute(Pooled, OvXMLElement* pParent) : OvXMLNode(Kind::Attribute, pParent) {}
    Key GetKey() const;
    OvXMLAttribute* Next() const { return static_cast<OvXMLAttribute*>(m_pNext); }
};

// An element. Its attributes lie in a map under their lower-case names, so that a lookup ignores case while each keeps
// its name as written. They are visited (listed, written, cloned) in the order of a table of 17 buckets, a bucket's
// newest first; the bucket is h mod 17 where h = h * 33 + byte over the key, bytes signed. It is not the order of the
// text.
class PELKGUI_API OvXMLElement : public OvXMLNode {
public:
    // Constructing puts it into no list.
    OvXMLElement(OvXMLElement* pParent = nullptr, const char* pszName = nullptr);
    OvXMLElement(const OvXMLElement&) = delete;
    OvXMLElement& operator=(const OvXMLElement&) = delete;
    // Destroys all children and attributes with it.
    ~OvXMLElement() override;

    // Documents. All give a new root that the caller deletes, or null: a syntax error, something that is not supported,
    // no memory, a file that cannot be opened or has more than 4 MiB. With nStrict a document must begin with
    // <?xml version=" (in double quotes; the rest of the declaration is not looked at).
    //
    // Accepted are comments and one DOCTYPE before the root, elements, attributes in either quotes, text, comments,
    // CDATA directly behind a tag or comment (decoded and folded like text), and the references of StringToValue. An
    // element's runs of text are joined with single spaces. A repeated attribute replaces the earlier one in its place.
    // What follows the root's end tag is ignored, and an end tag may be cut off by the end of the text.
    static OvXMLElement* FromString(const char* pszText, int nStrict);
    // UTF-8 bytes, with or without its mark, converted to the process's code page. Bytes with a UTF-16 mark are taken
    // as they are and hardly ever make a document; behind the mark FE FF their pairs are swapped in the caller's
    // buffer.
    static OvXMLElement* FromBytes(unsigned char* pBytes, unsigned long nLength, int nStrict);
    // A missing file is created, empty, and gives null.
    static OvXMLElement* FromFile(const char* pszPath, int nStrict);
    // Reads an open file handle from its position on. The handle stays open and where the reading ended.
    static OvXMLElement* FromFile(void* hFile, int nStrict);
    // Reads one element, from its "<" to its end tag, into this one, which should be empty: its name and value are
    // replaced, attributes and children are added. 0: there is no whole element; the cursor is then anywhere and this
    // element has what was complete.
    int ParseString(const char*& pszCursor);

    // The whole element as text, behind <?xml version="1.0"?> with bDeclaration. With bNewLines a CR LF stands behind
    // every element and every start tag with children, and behind the declaration or, without one, at the very front.
    // Children come before the text.
    CString ToString(int bDeclaration, int bNewLines);
    // Appends the element to the text.
    void ToString(CString& strOut, int bNewLines);
    // Stores the element with everything in it, or loads it: name and value change, attributes and children are added
    // to what is there. A loaded attribute takes the place of an earlier one of its key, which then belongs to the
    // caller. What the archive throws goes through; what was read until then stays.
    void Serialize(CArchive& archive);

    // The values of all attributes (save those named "SHA1" or with a ":") and the texts of the subtree, with spaces
    // between them, trimmed.
    CString GetRecursiveWords();
    // The same behind what the text holds already, and not trimmed.
    void AddRecursiveWords(CString& strWords);

    // Children, in document order.
    OvXMLElement* AddElement(const char* pszName); // the new last child
    // Adds a child at the end and gives it back. Null, and nothing changes: it has a parent, is null, or contains this
    // element.
    OvXMLElement* AddElement(OvXMLElement* pChild);
    // Takes this element out of its parent's list and clears its parent. The caller owns it now.
    OvXMLElement* Detach();
    // Takes the child out of the list. It keeps its parent pointer and belongs to the caller. Nothing if not in the
    // list.
    void RemoveElement(OvXMLElement* pChild);
    void DeleteAllElements();
    int GetElementCount() const { return static_cast<int>(m_nElements); }
    // Null if there is none, and on a null object.
    OvXMLElement* GetFirstElement() const;
    // Null when there are no children. The position stays good until its child leaves the list.
    POSITION GetElementIterator() const { return reinterpret_cast<POSITION>(m_pFirstElement); }
    // The child at the position, which moves to the next one, or null behind the last. Null for a null position.
    OvXMLElement* GetNextElement(POSITION& position) const;
    // The first child of that name (as IsNamed compares) or null; with bCreate a new last child instead of null.
    OvXMLElement* GetElementByName(const char* pszName) const;
    OvXMLElement* GetElementByName(const char* pszName, BOOL bCreate);

    // Attributes. Names given here are lower-cased for the ASCII letters alone.
    OvXMLAttribute* GetAttribute(const char* pszName) const;
    // Gives the attribute of that name, which keeps its name as first written, or a new one, its value; a null value
    // leaves the one it has. Returns the attribute.
    OvXMLAttribute* AddAttribute(const char* pszName, const char* pszValue);
    OvXMLAttribute* AddAttribute(const char* pszName, int nValue);
    // The colour as its red (low byte), green and blue in decimal: "255,128,0".
    OvXMLAttribute* AddAttribute(const char* pszName, unsigned long crValue);
    OvXMLAttribute* AddAttribute(const char* pszName, COLORREF crValue);
    // Puts the attribute into the map under its name exactly as written (so GetAttribute does not find one with capital
    // letters), and gives it back. An earlier one under that key leaves the map and belongs to the caller. Null, and
    // nothing changes: it has a parent or is null.
    OvXMLAttribute* AddAttribute(OvXMLAttribute* pAttribute);
    int GetAttributeCount() const { return static_cast<int>(m_nAttributes); }
    // Null when there are none. A position stays good until its attribute leaves the map.
    POSITION GetAttributeIterator() const;
    // The next attribute; the position is null once the last was given. Null for a null position.
    OvXMLAttribute* GetNextAttribute(POSITION& position) const;
    // The value, even an empty one; the default only if there is no such attribute.
    CString GetAttributeValue(const char* pszName, const char* pszDefault) const;
    // The number that the value begins with, cut to the range of an int; 0 if it begins with none. The default if there
    // is no such attribute or its value is empty.
    int GetAttributeValueInt(const char* pszName, int nDefault) const;
    // The value's "red,green,blue", each reduced to 8 bits. What the value does not reach is the default's red and
    // green, and for blue the default's red again. The default if there is no such attribute or its value is empty.
    unsigned long GetAttributeValueColor(const char* pszName, unsigned long crDefault) const;
    // Takes out whatever attribute stands under that one's lower-case name. It keeps its parent and belongs to the
    // caller.
    void RemoveAttribute(OvXMLAttribute* pAttribute);
    void DeleteAttribute(const char* pszName);
    void DeleteAllAttributes();

    // A deep copy with that parent pointer, in no list. The caller owns it. Attributes of one bucket change places.
    OvXMLElement* Clone(OvXMLElement* pParent);
    // Whether both have the same names and values, the same attributes in any order and equal children in the same
    // order, byte for byte. FALSE for null.
    BOOL Equals(OvXMLElement* pOther) const;

protected:
    // UTF-8 to the process's code page, up to the first zero byte.
    static CString WideCharToString(unsigned char* pBytes, unsigned long nLength);

private:
    friend class OvXMLNode;
    friend class OvXMLAttribute;
    friend class OvXMLIndex;
    friend class OvXMLPool;
    class Reader;
    class Loader;
    class Writer;

    OvXMLElement(Pooled, OvXMLElement* pParent) : OvXMLNode(Kind::Element, pParent) {}

    OvXMLElement* First() const { return static_cast<OvXMLElement*>(m_pFirstElement); }
    OvXMLElement* Next() const { return static_cast<OvXMLElement*>(m_pNext); }
    OvXMLAttribute* FirstAttribute() const { return static_cast<OvXMLAttribute*>(m_pFirstAttribute); }

    // Into and out of the list. The child's parent is this element.
    void Append(OvXMLElement* pChild);
    void TakeOut(OvXMLElement* pChild);
    bool IsWithin(const OvXMLElement* pElement) const;

    OvXMLAttribute* Find(const OvXMLAttribute::Key& key) const;
    // Into and out of the map. The attribute's parent is this element. What stood under the key leaves the map and is
    // given back; the other takes its place.
    OvXMLAttribute* Store(OvXMLAttribute* pAttribute, const OvXMLAttribute::Key& key);
    // Under its name as the system lower-cases it.
    OvXMLAttribute* StoreLowered(OvXMLAttribute* pAttribute);
    void TakeOut(OvXMLAttribute* pAttribute);
    // Stores an attribute that nobody has seen yet; what it displaces was seen by nobody either, and goes.
    void StoreNew(OvXMLAttribute* pAttribute, const OvXMLAttribute::Key& key);
    void StoreNewLowered(OvXMLAttribute* pAttribute);
    void Place(OvXMLAttribute* pAttribute, OvXMLNode* pBefore);

    // Takes over another element's attributes and children.
    enum class Displaced { Destroy, LeaveToCaller };
    void TakeContents(OvXMLElement* pFrom, Displaced displaced);
    // After a failure: the root's child that was not complete, at or above pOpen, goes with all beneath it.
    static void DropOpenChild(const OvXMLElement* pRoot, OvXMLElement* pOpen);
    void Store(CArchive& archive);
    void CopyAttributesTo(OvXMLElement* pCopy, OvXMLPool& pool) const;
    bool EqualsButChildren(const OvXMLElement* pOther) const;

    OvXMLNode* m_pFirstElement = nullptr;   // owned, with all that follow it
    OvXMLNode* m_pFirstAttribute = nullptr; // likewise, in the order they are visited
    OvXMLIndex* m_pIndex = nullptr;         // owned; of the attributes, once there are many
    unsigned m_nElements = 0;
    unsigned m_nAttributes = 0;
};
