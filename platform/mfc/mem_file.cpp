#include "afx/file.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

IMPLEMENT_DYNAMIC(CMemFile, CFile)

namespace {

constexpr ULONGLONG kLongest = LLONG_MAX; // positions are given as signed offsets

} // namespace

CMemFile::CMemFile(UINT nGrowBytes) : grow_(nGrowBytes) {}

CMemFile::CMemFile(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes) : grow_(nGrowBytes)
{
    Attach(lpBuffer, nBufferSize, nGrowBytes);
}

CMemFile::~CMemFile()
{
    CMemFile::Close();
}

void CMemFile::Attach(BYTE* lpBuffer, UINT nBufferSize, UINT nGrowBytes)
{
    CMemFile::Close();
    memory_ = lpBuffer;
    capacity_ = nBufferSize;
    length_ = nGrowBytes == 0 ? nBufferSize : 0;
    grow_ = nGrowBytes;
    own_ = false;
}

BYTE* CMemFile::Detach()
{
    BYTE* const memory = memory_;
    memory_ = nullptr;
    capacity_ = length_ = position_ = 0;
    own_ = true;
    return memory;
}

void CMemFile::Close()
{
    const bool own = own_;
    BYTE* const memory = Detach();
    if (own)
        std::free(memory);
}

UINT CMemFile::Read(void* lpBuf, UINT nCount)
{
    if (position_ >= length_)
        return 0;
    const auto count = static_cast<UINT>(std::min<ULONGLONG>(nCount, length_ - position_));
    std::memcpy(lpBuf, memory_ + position_, count);
    position_ += count;
    return count;
}

void CMemFile::Write(const void* lpBuf, UINT nCount)
{
    if (nCount == 0)
        return;
    if (nCount > kLongest - position_)
        AfxThrowFileException(CFileException::badSeek);
    if (position_ + nCount > length_)
        SetLength(position_ + nCount);
    std::memcpy(memory_ + position_, lpBuf, nCount);
    position_ += nCount;
}

ULONGLONG CMemFile::Seek(LONGLONG lOff, UINT nFrom)
{
    const ULONGLONG base = nFrom == current ? position_ : nFrom == end ? length_ : 0;
    // Two's complement: a negative offset wraps back below the base, a position past the largest is refused alike.
    const ULONGLONG position = base + static_cast<ULONGLONG>(lOff);
    if (position > kLongest)
        AfxThrowFileException(CFileException::badSeek);
    return position_ = position;
}

void CMemFile::SetLength(ULONGLONG nNewLen)
{
    reserve(nNewLen);
    if (nNewLen > length_)
        std::memset(memory_ + length_, 0, nNewLen - length_);
    length_ = nNewLen;
}

// Doubles at least, so that writing in small pieces stays linear.
void CMemFile::reserve(ULONGLONG size)
{
    if (size <= capacity_)
        return;
    if (grow_ == 0 || size > kLongest - grow_)
        AfxThrowMemoryException();
    const ULONGLONG capacity = std::max((size + grow_ - 1) / grow_ * grow_, capacity_ * 2);
    auto* const memory = static_cast<BYTE*>(std::realloc(own_ ? memory_ : nullptr, capacity));
    if (!memory)
        AfxThrowMemoryException();
    if (!own_ && length_ > 0)
        std::memcpy(memory, memory_, length_);
    memory_ = memory;
    capacity_ = capacity;
    own_ = true;
}
