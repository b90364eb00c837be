// Gathering and normalising the words of a document.
#include "xml/OvXML.h"

#include "xml/OvXMLSink.h"

namespace {

constexpr std::string_view kWordMarks = "\"'-&/,;#()";

bool IsWordByte(unsigned char nByte)
{
    const bool bDigit = nByte >= '0' && nByte <= '9';
    const bool bLetter = (nByte >= 'A' && nByte <= 'Z') || (nByte >= 'a' && nByte <= 'z');
    return bDigit || bLetter || nByte >= 192 || kWordMarks.find(static_cast<char>(nByte)) != kWordMarks.npos;
}

void AppendWord(OvXMLSink& words, std::string_view word)
{
    if (!words.IsEmpty())
        words.Append(' ');
    words.Append(word);
}

} // namespace

CString OvXMLElement::GetRecursiveWords()
{
    CString strWords;
    AddRecursiveWords(strWords);
    strWords.Trim();
    return strWords;
}

void OvXMLElement::AddRecursiveWords(CString& strWords)
{
    OvXMLSink words(strWords);
    // An element's attributes come before its children, its own text after them.
    const auto appendText = [&words](const OvXMLElement* p) {
        if (!p->Value().empty())
            AppendWord(words, p->Value());
    };
    const OvXMLElement* p = this;
    for (;;) {
        for (const OvXMLAttribute* pAttribute = p->FirstAttribute(); pAttribute; pAttribute = pAttribute->Next()) {
            // Namespaces, prefixed names and check sums are no words.
            if (pAttribute->Name().find(':') == std::string_view::npos && !pAttribute->IsNamedLike("SHA1"))
                AppendWord(words, pAttribute->Value());
        }
        if (p->First()) {
            p = p->First();
            continue;
        }
        appendText(p);
        while (p != this && !p->Next()) {
            p = p->Holder();
            appendText(p);
        }
        if (p == this)
            return;
        p = p->Next();
    }
}

void OvXMLNode::UniformString(CString& strText)
{
    strText.Trim();
    const int nLength = strText.GetLength();
    if (nLength == 0)
        return;
    char* const pBegin = strText.GetBuffer(nLength);
    char* pOut = pBegin;
    bool bAfterSpace = true;
    for (const char* p = pBegin; p < pBegin + nLength; p++) {
        const auto nByte = static_cast<unsigned char>(*p);
        if (nByte > ' ') {
            if (!IsWordByte(nByte))
                continue;
            bAfterSpace = false;
            *pOut++ = *p;
        } else if (!bAfterSpace) {
            bAfterSpace = true;
            *pOut++ = ' ';
        }
    }
    strText.ReleaseBuffer(static_cast<int>(pOut - pBegin));
}
