// Reading a document from text. One pass, no recursion: the open elements are the tree's own chain of parents.
#include "xml/OvXML.h"

#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "xml/OvXMLChain.h"
#include "xml/OvXMLText.h"

using namespace OvXMLText;

namespace {

constexpr std::string_view kDeclaration = "<?xml version=\"";
constexpr std::string_view kDoctype = "<!DOCTYPE";
constexpr std::string_view kCdata = "<![CDATA[";
constexpr std::string_view kCdataEnd = "]]>";
constexpr std::string_view kComment = "<!--";
constexpr std::string_view kCommentEnd = "-->";

// Moves p behind the next such mark. False if there is none.
bool SkipPast(const char*& p, std::string_view mark)
{
    for (const char* pEnd = p; (pEnd = std::strchr(pEnd, mark.back()));) {
        pEnd++;
        if (std::string_view(p, static_cast<size_t>(pEnd - p)).ends_with(mark)) {
            p = pEnd;
            return true;
        }
    }
    return false;
}

// Whether the token stands at p, behind white space; p moves behind it.
bool Match(const char*& p, std::string_view token)
{
    const char* pToken = Skip(p, kMarkupSpace);
    if (*pToken == '\0' || !MatchHere(pToken, token))
        return false;
    p = pToken;
    return true;
}

// False if one has no end.
bool SkipComments(const char*& p)
{
    while (Match(p, kComment)) {
        if (!SkipPast(p, kCommentEnd))
            return false;
    }
    return true;
}

// Moves p behind what may stand before the root. False if the document is refused.
bool SkipProlog(const char*& p, bool bStrict)
{
    if (Match(p, kDeclaration)) {
        if (!SkipPast(p, "?>"))
            return false;
    } else if (bStrict) {
        return false;
    }
    return SkipComments(p) && (!Match(p, kDoctype) || SkipPast(p, ">")) && SkipComments(p);
}
} // namespace

// Builds the tree of one element in a pool of its own.
class OvXMLElement::Reader {
public:
    explicit Reader(const char* p) : m_p(p) {}

    // False if no whole element stands here. The root, if there is one, then has those children that were complete.
    bool Read()
    {
        bool bGood = ReadStartTag();
        while (bGood && m_pOpen)
            bGood = ReadContent();
        if (!bGood)
            DropOpenChild(m_pRoot.get(), m_pOpen);
        return bGood;
    }
    const char* Cursor() const { return m_p; }
    std::unique_ptr<OvXMLElement> TakeRoot() { return std::move(m_pRoot); }

    // A name="value" pair up to its opening quote.
    struct Pair {
        std::string_view name;
        unsigned nHash = 0; // of the lower-case name
        char chQuote = 0;
    };
    // Moves p behind the opening quote. False if there is no pair; the name is set if it could be read.
    static bool ReadPair(const char*& p, Pair& pair)
    {
        const char* pName = Skip(p, kMarkupSpace);
        for (p = pName; Is(*p, kNameByte); p++)
            pair.nHash = OvXMLAttribute::Key::AddToHash(pair.nHash, OvXMLAttribute::Key::Lower(*p));
        pair.name = { pName, static_cast<size_t>(p - pName) };
        p = Skip(p, kMarkupSpace);
        if (pair.name.empty() || *p != '=')
            return false;
        p = Skip(p + 1, kMarkupSpace);
        pair.chQuote = *p;
        if (pair.chQuote != '"' && pair.chQuote != '\'')
            return false;
        p++;
        return true;
    }
    // Where a value's decoding stopped the closing quote must stand. White space may still stand before it: that is how
    // a value can end in "&# ".
    static bool SkipQuote(const char*& p, char chQuote) { return Match(p, { &chQuote, 1 }); }

private:
    bool ReadStartTag()
    {
        const char* pTag = Skip(m_p, kMarkupSpace);
        if (*pTag != '<')
            return false;
        const char* pName = Skip(pTag + 1, kMarkupSpace);
        m_p = Skip(pName, kNameByte);
        if (m_p == pName)
            return false;
        Open({ pName, static_cast<size_t>(m_p - pName) });
        for (;;) {
            m_p = Skip(m_p, kMarkupSpace);
            if (*m_p == '>') {
                m_p++;
                return true;
            }
            if (*m_p == '/') {
                m_p++;
                if (!Match(m_p, ">"))
                    return false;
                Close();
                return true;
            }
            if (!ReadAttribute())
                return false;
        }
    }

    void Open(std::string_view name)
    {
        if (!m_pRoot) {
            m_pRoot.reset(OvXMLPool::AddRoot(OvXMLPool::Create(), nullptr, name));
            m_pPool = OvXMLPool::Of(m_pRoot.get());
            m_pOpen = m_pRoot.get();
            return;
        }
        OvXMLElement* pChild = m_pPool->AddElement(m_pOpen, name);
        m_pOpen->Append(pChild);
        m_pOpen = pChild;
    }
    void Close() { m_pOpen = m_pOpen->m_pParent; }

    bool ReadAttribute()
    {
        Pair pair;
        if (!ReadPair(m_p, pair))
            return false;
        std::unique_ptr<OvXMLAttribute> pAttribute;
        const char* pPlainEnd = Skip(m_p, kPlain);
        if (*pPlainEnd == pair.chQuote) {
            pAttribute.reset(m_pPool->AddAttribute(m_pOpen, pair.name, { m_p, static_cast<size_t>(pPlainEnd - m_p) }));
            m_p = pPlainEnd + 1;
        } else {
            const char* pQuote = std::strchr(pPlainEnd, pair.chQuote);
            if (!pQuote)
                return false;
            char* pValue = nullptr;
            pAttribute.reset(m_pPool->AddAttribute(m_pOpen, pair.name, static_cast<size_t>(pQuote - m_p), pValue));
            m_p = Decode(m_p, pQuote, pValue);
            m_pPool->SetValueEnd(pAttribute.get(), pValue);
            if (!SkipQuote(m_p, pair.chQuote))
                return false;
        }
        const OvXMLAttribute::Key key(pair.name, OvXMLAttribute::Key::Form::Lowered, pair.nHash);
        m_pOpen->StoreNew(pAttribute.release(), key); // one that is given again replaces the earlier one
        return true;
    }

    // One pass over an element's content: a run of CDATA or text, then what follows it.
    bool ReadContent()
    {
        const char* p = Skip(m_p, kMarkupSpace);
        if (*p == '\0')
            return false;
        if (const char* pCdata = p; MatchHere(pCdata, kCdata)) {
            if (!ReadCdata(pCdata))
                return false;
        } else if (!ReadText(p)) {
            return false;
        }
        if (MatchEndTag()) {
            Close();
            return true;
        }
        if (Match(m_p, kComment))
            return SkipPast(m_p, kCommentEnd);
        return ReadStartTag();
    }

    bool ReadCdata(const char* p)
    {
        m_p = p;
        if (!SkipPast(m_p, kCdataEnd))
            return false;
        AppendText(p, m_p - kCdataEnd.size()); // where a faulty reference stops the decoding is of no matter here
        return true;
    }

    // The run from m_p up to the next "<". pText is its first byte that is no white space.
    bool ReadText(const char* pText)
    {
        const char* pPlainEnd = Skip(pText, kPlain);
        const char* pEnd = *pPlainEnd == '<' ? pPlainEnd : std::strchr(pPlainEnd, '<');
        if (!pEnd)
            return false;
        const bool bWhole = pEnd == m_p || AppendText(pText, pEnd);
        m_p = pEnd;
        return bWhole;
    }

    // Joins a decoded run to the open element's value. False if the decoding stopped early.
    bool AppendText(const char* p, const char* pEnd)
    {
        const std::string_view value = m_pOpen->Value();
        const bool bSeparate = !value.empty() && value.back() != ' ';
        if (p == pEnd && !bSeparate)
            return true;
        char* pOut = m_pPool->ExtendValue(m_pOpen, static_cast<size_t>(pEnd - p) + (bSeparate ? 1 : 0));
        if (bSeparate)
            *pOut++ = ' ';
        const bool bWhole = Decode(p, pEnd, pOut) == pEnd;
        m_pPool->SetValueEnd(m_pOpen, pOut);
        return bWhole;
    }

    // "</name>", in the same letters and without white space inside, or what the text's end leaves of it.
    bool MatchEndTag()
    {
        const char* p = Skip(m_p, kMarkupSpace);
        if (*p == '\0' || !MatchHere(p, "</") || !MatchHere(p, m_pOpen->Name()) || !MatchHere(p, ">"))
            return false;
        m_p = p;
        return true;
    }

    const char* m_p;
    std::unique_ptr<OvXMLElement> m_pRoot;
    OvXMLPool* m_pPool = nullptr;    // the root's
    OvXMLElement* m_pOpen = nullptr; // the element whose tag was opened last and not closed yet
};

OvXMLElement* OvXMLElement::FromString(const char* pszText, int nStrict)
{
    try {
        const char* p = pszText ? pszText : "";
        if (!SkipProlog(p, nStrict != 0))
            return nullptr;
        Reader reader(p);
        if (reader.Read())
            return reader.TakeRoot().release();
    } catch (CException* pException) {
        pException->Delete();
    } catch (const std::bad_alloc&) { // no root without memory
    }
    return nullptr;
}

int OvXMLElement::ParseString(const char*& pszCursor)
{
    Reader reader(pszCursor);
    const bool bWhole = reader.Read();
    pszCursor = reader.Cursor();
    if (const std::unique_ptr<OvXMLElement> pRoot = reader.TakeRoot()) {
        SetText(pRoot->Name(), pRoot->Value());
        TakeContents(pRoot.get(), Displaced::Destroy);
    }
    return bWhole;
}

int OvXMLAttribute::ParseString(const char*& pszCursor)
{
    OvXMLElement::Reader::Pair pair;
    const bool bPair = OvXMLElement::Reader::ReadPair(pszCursor, pair);
    if (!pair.name.empty())
        SetName(std::string(pair.name).c_str());
    const char* pQuote = bPair ? std::strchr(pszCursor, pair.chQuote) : nullptr;
    if (!pQuote)
        return 0;
    std::string strValue(static_cast<size_t>(pQuote - pszCursor), '\0');
    char* pEnd = strValue.data();
    pszCursor = Decode(pszCursor, pQuote, pEnd);
    strValue.resize(static_cast<size_t>(pEnd - strValue.data()));
    SetText(Name(), strValue);
    return OvXMLElement::Reader::SkipQuote(pszCursor, pair.chQuote);
}
