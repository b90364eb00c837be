// Writing a tree as text.
#include "xml/OvXML.h"

#include <string>

#include "xml/OvXMLSink.h"
#include "xml/OvXMLText.h"

using namespace OvXMLText;

namespace {

constexpr std::string_view kDeclaration = "<?xml version=\"1.0\"?>";
constexpr std::string_view kNewLine = "\r\n";

void AppendReference(OvXMLSink& out, char ch)
{
    switch (ch) {
    case '"':
        return out.Append("&quot;");
    case '&':
        return out.Append("&amp;");
    case '\'':
        return out.Append("&apos;");
    case '<':
        return out.Append("&lt;");
    case '>':
        return out.Append("&gt;");
    default:
        const auto nByte = static_cast<unsigned char>(ch); // from 0x80 up: three digits
        const char reference[] = { '&',
                                   '#',
                                   static_cast<char>('0' + nByte / 100),
                                   static_cast<char>('0' + nByte / 10 % 10),
                                   static_cast<char>('0' + nByte % 10),
                                   ';' };
        out.Append({ reference, sizeof reference });
    }
}

// The text form of a value ends at its first zero byte.
void AppendEscaped(OvXMLSink& out, std::string_view value)
{
    const char* p = value.data();
    const char* const pEnd = p + value.size();
    while (p < pEnd) {
        const char* const pPlain = p;
        while (p < pEnd && !Is(*p, kEscaped))
            p++;
        out.Append({ pPlain, static_cast<size_t>(p - pPlain) });
        if (p == pEnd || *p == '\0')
            return;
        AppendReference(out, *p++);
    }
}

} // namespace

// Appends elements to a text.
class OvXMLElement::Writer {
public:
    Writer(CString& strOut, bool bNewLines) : m_out(strOut), m_bNewLines(bNewLines) {}

    void Write(const OvXMLElement* pRoot)
    {
        const OvXMLElement* p = pRoot;
        for (;;) {
            if (BeginElement(p)) {
                p = p->First();
                continue;
            }
            while (p != pRoot && !p->Next()) {
                p = p->Holder();
                EndElement(p);
            }
            if (p == pRoot)
                return;
            p = p->Next();
        }
    }
    void WriteAttribute(const OvXMLAttribute* p)
    {
        m_out.Append(p->Name());
        m_out.Append("=\"");
        AppendEscaped(m_out, p->Value());
        m_out.Append('"');
    }

private:
    // Writes the element up to its children; whole, and gives false, if it has none.
    bool BeginElement(const OvXMLElement* p)
    {
        m_out.Append('<');
        m_out.Append(p->Name());
        for (const OvXMLAttribute* pAttribute = p->FirstAttribute(); pAttribute; pAttribute = pAttribute->Next()) {
            m_out.Append(' ');
            WriteAttribute(pAttribute);
        }
        if (!p->First() && p->Value().empty()) {
            m_out.Append("/>");
            EndLine();
            return false;
        }
        m_out.Append('>');
        if (p->First()) {
            EndLine();
            return true;
        }
        EndElement(p);
        return false;
    }
    void EndElement(const OvXMLElement* p)
    {
        AppendEscaped(m_out, p->Value());
        m_out.Append("</");
        m_out.Append(p->Name());
        m_out.Append('>');
        EndLine();
    }
    void EndLine()
    {
        if (m_bNewLines)
            m_out.Append(kNewLine);
    }

    OvXMLSink m_out;
    const bool m_bNewLines;
};

CString OvXMLElement::ToString(int bDeclaration, int bNewLines)
{
    CString strOut;
    {
        OvXMLSink out(strOut);
        if (bDeclaration)
            out.Append(kDeclaration);
        if (bNewLines)
            out.Append(kNewLine);
    }
    ToString(strOut, bNewLines);
    return strOut;
}

void OvXMLElement::ToString(CString& strOut, int bNewLines)
{
    Writer(strOut, bNewLines != 0).Write(this);
}

void OvXMLAttribute::ToString(CString& strOut)
{
    OvXMLElement::Writer(strOut, false).WriteAttribute(this);
}

void OvXMLNode::ValueToString(const char* pszValue, CString& strOut)
{
    const std::string strValue(View(pszValue)); // it may lie in the very text that grows
    OvXMLSink out(strOut);
    AppendEscaped(out, strValue);
}
