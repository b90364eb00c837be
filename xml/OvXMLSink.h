// Appends many small pieces to a CString, looking at its buffer only when that is full.
#pragma once

#include <algorithm>
#include <climits>
#include <string_view>

#include <afx.h>

#include "xml/OvXMLText.h"

class OvXMLSink {
public:
    // The string must not be used otherwise until the sink is gone.
    explicit OvXMLSink(CString& strOut) : m_strOut(strOut), m_nLength(static_cast<size_t>(strOut.GetLength()))
    {
        Reserve(0);
    }
    ~OvXMLSink() { m_strOut.ReleaseBuffer(static_cast<int>(m_nLength)); }
    OvXMLSink(const OvXMLSink&) = delete;
    OvXMLSink& operator=(const OvXMLSink&) = delete;

    bool IsEmpty() const { return m_nLength == 0; }
    void Append(std::string_view text)
    {
        if (text.size() > m_nRoom - m_nLength)
            Reserve(text.size());
        OvXMLText::CopyBytes(m_pBuffer + m_nLength, text.data(), text.size());
        m_nLength += text.size();
    }
    void Append(char ch)
    {
        if (m_nRoom == m_nLength)
            Reserve(1);
        m_pBuffer[m_nLength++] = ch;
    }

private:
    static constexpr size_t kFirstRoom = 256;
    static constexpr size_t kMostRoom = INT_MAX - 64;

    void Reserve(size_t nMore)
    {
        if (nMore > kMostRoom - m_nLength)
            AfxThrowMemoryException();
        const size_t nRoom = std::clamp(m_nRoom * 2, m_nLength + nMore, kMostRoom);
        if (m_pBuffer)
            m_strOut.ReleaseBuffer(static_cast<int>(m_nLength));
        m_pBuffer = m_strOut.GetBuffer(static_cast<int>(std::max(nRoom, kFirstRoom)));
        m_nRoom = std::max(nRoom, kFirstRoom);
    }

    CString& m_strOut;
    char* m_pBuffer = nullptr;
    size_t m_nLength;
    size_t m_nRoom = 0; // of the buffer, in all
};
