#include "xml/TextUtil.h"

#include <cstring>
#include <string>
#include <string_view>

#include "xml/FoldTable.h"

namespace {

std::string_view View(const char* psz)
{
    return psz ? psz : std::string_view();
}

std::string Folded(std::string_view text)
{
    std::string strFolded(text);
    for (char& ch : strFolded)
        ch = static_cast<char>(kFoldTable[static_cast<unsigned char>(ch)]);
    return strFolded;
}

const char* FindFolded(std::string_view text, std::string_view pattern)
{
    if (text.empty() || pattern.empty())
        return nullptr;
    const std::string strText = Folded(text);
    const std::string strPattern = Folded(pattern);
    // Linear, whatever is searched for.
    const void* pFound = memmem(strText.data(), strText.size(), strPattern.data(), strPattern.size());
    return pFound ? text.data() + (static_cast<const char*>(pFound) - strText.data()) : nullptr;
}

bool IsBlank(CString strText)
{
    return strText.Trim().IsEmpty();
}

} // namespace

const char* _tcsistr(const char* pszText, const char* pszPattern)
{
    return FindFolded(View(pszText), View(pszPattern));
}

const char* _tcsnistr(const char* pszText, const char* pszPattern, unsigned int nCount)
{
    const size_t nPattern = pszPattern ? strnlen(pszPattern, nCount) : 0;
    return nPattern == nCount ? FindFolded(View(pszText), { pszPattern, nCount }) : nullptr;
}

void Replace(CString& strText, const char* pszFind, const char* pszWith)
{
    const std::string_view find = View(pszFind);
    const std::string_view with = View(pszWith);
    if (find.empty() || with.find(find) != with.npos)
        return;
    // Searching from the front each time finds what ends first. So the text is walked once: what was put in is walked
    // as if it still stood before the rest, and what came before it is still there to begin a match.
    std::string strDone;
    std::string strRest(strText, static_cast<size_t>(strText.GetLength())); // the next byte last
    strRest.assign(strRest.rbegin(), strRest.rend());
    while (!strRest.empty()) {
        strDone += strRest.back();
        strRest.pop_back();
        if (strDone.ends_with(find)) {
            strDone.resize(strDone.size() - find.size());
            strRest.append(with.rbegin(), with.rend());
        }
    }
    strText = CString(strDone.data(), static_cast<int>(strDone.size()));
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the published signature
void Split(CString strText, const char* pszSeparator, CArray<CString, CString&>& pieces, int bKeepLeadingEmpty,
           int bSkipBlank)
{
    const CString strSeparator = View(pszSeparator).empty() ? "|" : pszSeparator;
    int nPiece = 0;
    for (int nFound; (nFound = strText.Find(strSeparator, nPiece)) >= 0; nPiece = nFound + strSeparator.GetLength()) {
        CString strPiece = strText.Mid(nPiece, nFound - nPiece);
        const bool bKeep = strPiece.IsEmpty() ? nFound == 0 && bKeepLeadingEmpty : !bSkipBlank || !IsBlank(strPiece);
        if (bKeep)
            pieces.Add(strPiece);
    }
    CString strLast = strText.Mid(nPiece);
    if (!IsBlank(strLast))
        pieces.Add(strLast);
}
