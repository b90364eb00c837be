#include "tools/skinview/SkinTags.h"

#include <algorithm>

namespace skinview {

namespace {

class Scanner {
public:
    explicit Scanner(std::string_view text) : m_text(text) {}

    TagScan Run()
    {
        while (m_scan.strFault.empty() && !m_bRootClosed) {
            const size_t nTag = m_text.find('<', m_nAt);
            if (nTag == std::string_view::npos) {
                EndOfText();
                break;
            }
            MoveTo(nTag);
            TakeMarkup();
        }
        return m_scan;
    }

private:
    struct Open {
        std::string_view name;
        int nLine;
    };

    void MoveTo(size_t nTo)
    {
        nTo = std::min(nTo, m_text.size());
        m_nLine += static_cast<int>(std::count(m_text.begin() + static_cast<std::ptrdiff_t>(m_nAt),
                                               m_text.begin() + static_cast<std::ptrdiff_t>(nTo), '\n'));
        m_nAt = nTo;
    }

    void Fault(int nLine, std::string strFault)
    {
        m_scan.strFault = std::move(strFault);
        m_scan.nFaultLine = nLine;
    }

    // Also for a text without any element, which has nothing open.
    void EndOfText()
    {
        if (m_open.empty())
            Fault(m_nLine, "there is no element");
        else
            Fault(m_open.back().nLine, "<" + std::string(m_open.back().name) + "> is never closed");
    }

    // Steps over everything up to the end mark, which must be there.
    void StepOver(std::string_view end, const char* pszWhat)
    {
        const size_t nEnd = m_text.find(end, m_nAt);
        if (nEnd == std::string_view::npos)
            Fault(m_nLine, std::string(pszWhat) + " never ends");
        else
            MoveTo(nEnd + end.size());
    }

    void TakeMarkup()
    {
        const std::string_view rest = m_text.substr(m_nAt);
        if (rest.starts_with("<!--"))
            StepOver("-->", "a comment");
        else if (rest.starts_with("<![CDATA["))
            StepOver("]]>", "a CDATA section");
        else if (rest.starts_with("<?"))
            StepOver("?>", "the declaration");
        else if (rest.starts_with("<!"))
            StepOver(">", "the DOCTYPE");
        else
            TakeTag();
    }

    // From "<" to the ">" that stands in no quotes.
    void TakeTag()
    {
        const int nLine = m_nLine;
        char chQuote = 0;
        size_t nEnd = m_nAt + 1;
        for (; nEnd < m_text.size() && (chQuote || m_text[nEnd] != '>'); nEnd++) {
            const char ch = m_text[nEnd];
            if (!chQuote && ch == '<') {
                Fault(nLine, "a \"<\" stands within a tag: the tag before it lacks its \">\" or a quote");
                return;
            }
            if (chQuote ? ch == chQuote : (ch == '"' || ch == '\''))
                chQuote = chQuote ? 0 : ch;
        }
        if (nEnd >= m_text.size()) {
            Fault(nLine, chQuote ? "a quote is opened here and never closed" : "this tag has no \">\"");
            return;
        }
        const std::string_view tag = m_text.substr(m_nAt + 1, nEnd - m_nAt - 1);
        MoveTo(nEnd + 1);
        if (tag.starts_with('/'))
            Close(NameOf(tag.substr(1)), nLine);
        else
            OpenElement(tag, nLine);
    }

    static std::string_view NameOf(std::string_view tag) { return tag.substr(0, tag.find_first_of(" \t\r\n/")); }

    void OpenElement(std::string_view tag, int nLine)
    {
        m_scan.lines.push_back(nLine);
        if (!tag.ends_with('/'))
            m_open.push_back({ NameOf(tag), nLine });
        m_bRootClosed = m_open.empty();
    }

    void Close(std::string_view name, int nLine)
    {
        if (m_open.empty() || m_open.back().name != name) {
            const std::string strOpen = m_open.empty() ? "nothing is open"
                                                       : "<" + std::string(m_open.back().name) + "> of line " +
                                                             std::to_string(m_open.back().nLine) + " is open";
            Fault(nLine, "</" + std::string(name) + "> closes nothing: " + strOpen);
            return;
        }
        m_open.pop_back();
        m_bRootClosed = m_open.empty();
    }

    std::string_view m_text;
    size_t m_nAt = 0;
    int m_nLine = 1;
    bool m_bRootClosed = false;
    std::vector<Open> m_open;
    TagScan m_scan;
};

} // namespace

TagScan ScanTags(std::string_view text)
{
    return Scanner(text).Run();
}

} // namespace skinview
