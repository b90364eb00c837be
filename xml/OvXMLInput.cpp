// Documents from bytes and files.
#include "xml/OvXML.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>
#include <vector>

#include <windows.h>

namespace {

constexpr DWORD kLargestFile = 4 * 1024 * 1024; // bytes

bool BeginsWith(const unsigned char* pBytes, unsigned long nLength, std::string_view mark)
{
    return nLength >= mark.size() && std::memcmp(pBytes, mark.data(), mark.size()) == 0;
}

} // namespace

CString OvXMLElement::WideCharToString(unsigned char* pBytes, unsigned long nLength)
{
    if (nLength == 0)
        return {};
    if (nLength > INT_MAX / 4) // neither the converter nor a CString could hold more
        AfxThrowMemoryException();
    const auto* pszBytes = reinterpret_cast<const char*>(pBytes);
    std::vector<WCHAR> wide(nLength); // UTF-8 has a byte or more for every unit
    const int nWide = MultiByteToWideChar(CP_UTF8, 0, pszBytes, static_cast<int>(nLength), wide.data(),
                                          static_cast<int>(wide.size()));
    const int nText = WideCharToMultiByte(CP_ACP, 0, wide.data(), nWide, nullptr, 0, nullptr, nullptr);
    CString strText;
    WideCharToMultiByte(CP_ACP, 0, wide.data(), nWide, strText.GetBufferSetLength(nText), nText, nullptr, nullptr);
    strText.ReleaseBuffer(); // up to the first zero byte
    return strText;
}

OvXMLElement* OvXMLElement::FromBytes(unsigned char* pBytes, unsigned long nLength, int nStrict)
{
    const bool bBigEndian = BeginsWith(pBytes, nLength, "\xFE\xFF");
    if (bBigEndian || BeginsWith(pBytes, nLength, "\xFF\xFE")) {
        unsigned char* pText = pBytes + 2;
        const unsigned long nUnits = nLength / 2 - 1;
        for (unsigned long i = 0; bBigEndian && i < nUnits; i++)
            std::swap(pText[i * 2], pText[i * 2 + 1]);
        // As many bytes as there are units: that is the rule, though it makes no document of UTF-16.
        const std::string strText(reinterpret_cast<const char*>(pText), nUnits);
        return FromString(strText.c_str(), nStrict);
    }
    const unsigned long nMark = BeginsWith(pBytes, nLength, "\xEF\xBB\xBF") ? 3 : 0;
    return FromString(WideCharToString(pBytes + nMark, nLength - nMark), nStrict);
}

OvXMLElement* OvXMLElement::FromFile(const char* pszPath, int nStrict)
{
    const HANDLE hFile = CreateFileA(pszPath, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                                     FILE_ATTRIBUTE_NORMAL, nullptr);
    if (hFile == INVALID_HANDLE_VALUE)
        return nullptr;
    struct Closer {
        void operator()(HANDLE h) const { CloseHandle(h); }
    };
    const std::unique_ptr<void, Closer> closer(hFile);
    return FromFile(hFile, nStrict);
}

OvXMLElement* OvXMLElement::FromFile(void* hFile, int nStrict)
{
    const DWORD nSize = GetFileSize(hFile, nullptr);
    if (nSize > kLargestFile) // as is the result of a failure
        return nullptr;
    std::vector<unsigned char> bytes(nSize);
    DWORD nRead = 0;
    ReadFile(hFile, bytes.data(), nSize, &nRead, nullptr); // a failed read gives fewer bytes, and so no document
    return FromBytes(bytes.data(), nRead, nStrict);
}
