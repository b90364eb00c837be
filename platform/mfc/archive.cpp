#include "afx/archive.h"

#include <windows.h>

#include <algorithm>
#include <bit>
#include <climits>

static_assert(std::endian::native == std::endian::little, "archives are little-endian and written as they stand");

namespace {

constexpr UINT kSmallestBuffer = 128;
constexpr BYTE kLongLength = 0xFF;     // a 16-bit length follows
constexpr WORD kLongerLength = 0xFFFF; // a 32-bit length or count follows
constexpr WORD kWideText = 0xFFFE;     // UTF-16 follows
constexpr ULONGLONG kLongestText = INT_MAX / 2;
constexpr ULONGLONG kFirstPiece = 65536; // what a length is believed without proof, in bytes

} // namespace

CArchive::CArchive(CFile* pFile, UINT nMode, int nBufSize)
    : file_(pFile), loading_((nMode & load) != 0), flush_on_delete_((nMode & bNoFlushOnDelete) == 0),
      buffer_size_(static_cast<UINT>(std::max(nBufSize, static_cast<int>(kSmallestBuffer)))),
      buffer_(new BYTE[buffer_size_]), here_(buffer_.get()), end_(loading_ ? here_ : here_ + buffer_size_)
{}

CArchive::~CArchive() // NOLINT(bugprone-exception-escape): all that Close raises is a CException*
{
    if (!file_ || !flush_on_delete_)
        return;
    try {
        Close();
    } catch (CException* e) {
        e->Delete(); // nobody can be told from here
    }
}

void CArchive::Flush()
{
    if (!file_)
        return;
    if (!loading_)
        return write_buffer();
    const LONGLONG unread = end_ - here_;
    end_ = here_;
    if (unread > 0)
        file_->Seek(-unread, CFile::current);
}

void CArchive::write_buffer()
{
    const auto count = static_cast<UINT>(here_ - buffer_.get());
    here_ = buffer_.get(); // what cannot be written is not tried again
    if (count > 0)
        file_->Write(buffer_.get(), count);
}

void CArchive::Close()
{
    Flush();
    Abort();
}

void CArchive::Abort()
{
    end_ = here_; // nothing goes in or out without asking for the file, which is gone
    file_ = nullptr;
}

void CArchive::require_loading() const
{
    if (!file_)
        AfxThrowArchiveException(CArchiveException::genericException);
    if (!loading_)
        AfxThrowArchiveException(CArchiveException::writeOnly, file_->GetFilePath());
}

UINT CArchive::Read(void* lpBuf, UINT nMax)
{
    require_loading();
    auto* to = static_cast<BYTE*>(lpBuf);
    UINT left = nMax;
    while (left > 0) {
        if (here_ == end_ && left >= buffer_size_) { // a large piece needs no buffer
            const UINT count = file_->Read(to, left);
            left -= count;
            break;
        }
        if (here_ == end_) {
            here_ = buffer_.get();
            end_ = here_;
            end_ += file_->Read(here_, buffer_size_);
            if (here_ == end_)
                break;
        }
        const UINT count = std::min(left, static_cast<UINT>(end_ - here_));
        std::memcpy(to, here_, count);
        here_ += count;
        to += count;
        left -= count;
    }
    return nMax - left;
}

void CArchive::read_exactly(void* bytes, UINT count)
{
    if (Read(bytes, count) != count)
        AfxThrowArchiveException(CArchiveException::endOfFile, file_->GetFilePath());
}

void CArchive::Write(const void* lpBuf, UINT nMax)
{
    if (!file_)
        AfxThrowArchiveException(CArchiveException::genericException);
    if (loading_)
        AfxThrowArchiveException(CArchiveException::readOnly, file_->GetFilePath());
    if (nMax > static_cast<UINT>(end_ - here_))
        write_buffer();
    if (nMax >= buffer_size_)
        return file_->Write(lpBuf, nMax);
    if (nMax > 0)
        std::memcpy(here_, lpBuf, nMax);
    here_ += nMax;
}

void CArchive::WriteCount(DWORD dwCount)
{
    if (dwCount < kLongerLength) {
        *this << static_cast<WORD>(dwCount);
    } else {
        *this << kLongerLength << dwCount;
    }
}

DWORD CArchive::ReadCount()
{
    WORD count = 0;
    *this >> count;
    if (count != kLongerLength)
        return count;
    DWORD long_count = 0;
    *this >> long_count;
    return long_count;
}

CArchive& CArchive::operator<<(const CString& str)
{
    const auto length = static_cast<DWORD>(str.GetLength());
    if (length < kLongLength) {
        *this << static_cast<BYTE>(length);
    } else if (length < kWideText) {
        *this << kLongLength << static_cast<WORD>(length);
    } else {
        *this << kLongLength << kLongerLength << length;
    }
    Write(static_cast<LPCSTR>(str), length);
    return *this;
}

// Reads a length in its encoding; the mark of a wide text is passed over and reported.
DWORD CArchive::read_length(bool& is_wide)
{
    for (;;) {
        BYTE short_length = 0;
        *this >> short_length;
        if (short_length != kLongLength)
            return short_length;
        WORD length = 0;
        *this >> length;
        if (length == kLongerLength) {
            DWORD long_length = 0;
            *this >> long_length;
            return long_length;
        }
        if (length != kWideText)
            return length;
        if (is_wide) // a mark within the mark
            AfxThrowArchiveException(CArchiveException::badIndex, file_->GetFilePath());
        is_wide = true;
    }
}

// A claimed length is believed piece by piece, each no longer than all that came before it.
CString CArchive::read_bytes(ULONGLONG count)
{
    if (count > kLongestText)
        AfxThrowArchiveException(CArchiveException::badIndex, file_->GetFilePath());
    CString bytes;
    for (ULONGLONG have = 0; have < count;) {
        const ULONGLONG piece = std::min(count - have, std::max(have, kFirstPiece));
        char* const start = bytes.GetBufferSetLength(static_cast<int>(have + piece));
        read_exactly(start + have, static_cast<UINT>(piece));
        have += piece;
    }
    return bytes;
}

CArchive& CArchive::operator>>(CString& str)
{
    require_loading();
    bool is_wide = false;
    const DWORD length = read_length(is_wide);
    if (!is_wide) {
        str = read_bytes(length);
        return *this;
    }
    const CString units = read_bytes(static_cast<ULONGLONG>(length) * sizeof(WCHAR));
    str = CString(reinterpret_cast<LPCWSTR>(static_cast<LPCSTR>(units)), static_cast<int>(length));
    return *this;
}
