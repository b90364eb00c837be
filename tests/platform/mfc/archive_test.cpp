#include "tests/platform/mfc/Throws.h"

#include <afx.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

std::string Stored(const std::function<void(CArchive&)>& store, int nBufSize = 4096)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store, nBufSize);
    store(archive);
    archive.Close();
    std::string bytes(static_cast<size_t>(file.GetLength()), '\0');
    file.SeekToBegin();
    EXPECT_EQ(file.Read(bytes.data(), static_cast<UINT>(bytes.size())), bytes.size());
    return bytes;
}

// Of the exception that `load` meets in the bytes; CArchiveException::none without one.
int CauseOf(std::string bytes, const std::function<void(CArchive&)>& load)
{
    CMemFile file(reinterpret_cast<BYTE*>(bytes.data()), static_cast<UINT>(bytes.size()));
    CArchive archive(&file, CArchive::load);
    try {
        load(archive);
    } catch (CArchiveException* e) {
        const int nCause = e->m_cause;
        e->Delete();
        return nCause;
    }
    return CArchiveException::none;
}

struct LengthCase {
    const char* why;
    DWORD nLength;
    std::string prefix;
};

const LengthCase kTextLengths[] = {
    { "empty", 0, { "\0", 1 } },
    { "the last of one byte", 254, "\xfe" },
    { "the first of 16 bits", 255, { "\xff\xff\0", 3 } },
    { "the last of 16 bits", 65533, "\xff\xfd\xff" },
    { "the first of 32 bits", 65534, { "\xff\xff\xff\xfe\xff\0\0", 7 } },
    { "the mark itself as a length", 65535, { "\xff\xff\xff\xff\xff\0\0", 7 } },
};

TEST(CArchive, StoresTextsByLength)
{
    for (const LengthCase& c : kTextLengths) {
        SCOPED_TRACE(c.why);
        const CString strText('x', static_cast<int>(c.nLength));
        const std::string bytes = Stored([&](CArchive& ar) { ar << strText; });
        EXPECT_TRUE(bytes == c.prefix + std::string(c.nLength, 'x'));
        CString strLoaded("before");
        EXPECT_EQ(CauseOf(bytes, [&](CArchive& ar) { ar >> strLoaded; }), CArchiveException::none);
        EXPECT_TRUE(strLoaded == strText);
    }
}

const LengthCase kCounts[] = {
    { "none", 0, { "\0\0", 2 } },
    { "the last of 16 bits", 65534, "\xfe\xff" },
    { "the first of 32 bits", 65535, { "\xff\xff\xff\xff\0\0", 6 } },
    { "the largest", 0xFFFFFFFF, "\xff\xff\xff\xff\xff\xff" },
};

TEST(CArchive, StoresCounts)
{
    for (const LengthCase& c : kCounts) {
        SCOPED_TRACE(c.why);
        const std::string bytes = Stored([&](CArchive& ar) { ar.WriteCount(c.nLength); });
        EXPECT_EQ(bytes, c.prefix);
        DWORD nLoaded = 0;
        EXPECT_EQ(CauseOf(bytes, [&](CArchive& ar) { nLoaded = ar.ReadCount(); }), CArchiveException::none);
        EXPECT_EQ(nLoaded, c.nLength);
    }
}

void StoreEverything(CArchive& ar)
{
    ar << static_cast<BYTE>(0xE9) << 'c' << static_cast<short>(-2) << static_cast<WORD>(0xBEEF) << -3;
    ar << 0xDEADBEEFU << static_cast<LONGLONG>(-4) << static_cast<ULONGLONG>(5) << 1.5F << -2.25 << CString("text");
}

void LoadEverything(CArchive& ar)
{
    BYTE by = 0;
    char ch = 0;
    short n16 = 0;
    WORD w = 0;
    int n = 0;
    DWORD dw = 0;
    LONGLONG n64 = 0;
    ULONGLONG u64 = 0;
    float f = 0;
    double d = 0;
    CString str;
    ar >> by >> ch >> n16 >> w >> n >> dw >> n64 >> u64 >> f >> d >> str;
    EXPECT_TRUE(by == 0xE9 && ch == 'c' && n16 == -2 && w == 0xBEEF && n == -3 && dw == 0xDEADBEEF && n64 == -4);
    EXPECT_TRUE(u64 == 5 && f == 1.5F && d == -2.25 && str == "text");
}

TEST(CArchive, LoadsWhatItStoredAndNothingThatWasCutOff)
{
    const std::string bytes = Stored(StoreEverything);
    EXPECT_EQ(bytes.substr(0, 6), "\xe9"
                                  "c\xfe\xff\xef\xbe")
        << "little-endian";
    EXPECT_EQ(CauseOf(bytes, LoadEverything), CArchiveException::none);
    for (size_t cut = 0; cut < bytes.size(); cut++) {
        SCOPED_TRACE(cut);
        EXPECT_EQ(CauseOf(bytes.substr(0, cut), LoadEverything), CArchiveException::endOfFile);
    }
}

struct HostileCase {
    const char* why;
    std::string bytes;
    int nCause;
};

const HostileCase kHostileTexts[] = {
    { "four thousand million bytes", "\xff\xff\xff\xff\xff\xff\xffxyz", CArchiveException::badIndex },
    { "half of that", { "\xff\xff\xff\0\0\0\x20xyz", 10 }, CArchiveException::endOfFile },
    { "longer than the stream", "\x05xyz", CArchiveException::endOfFile },
    { "a length cut off", "\xff\xff", CArchiveException::endOfFile },
    { "wide text longer than the stream", { "\xff\xfe\xff\xff\xff\xff\0\0\0\x10", 10 }, CArchiveException::endOfFile },
    { "wide text of four thousand million", "\xff\xfe\xff\xff\xff\xff\xff\xff\xff\xff", CArchiveException::badIndex },
    { "wide within wide", "\xff\xfe\xff\xff\xfe\xff\x01xy", CArchiveException::badIndex },
};

TEST(CArchive, RefusesLyingLengths)
{
    for (const HostileCase& c : kHostileTexts) {
        SCOPED_TRACE(c.why);
        CString strText("before");
        EXPECT_EQ(CauseOf(c.bytes, [&](CArchive& ar) { ar >> strText; }), c.nCause);
        EXPECT_STREQ(strText, "before");
    }
}

TEST(CArchive, UnderstandsWideTexts)
{
    CString strText;
    const std::string bytes("\xff\xfe\xff\x02\x60\x4f\x41\0", 8); // U+4F60 and A
    CauseOf(bytes, [&](CArchive& ar) { ar >> strText; });
    EXPECT_STREQ(strText, "\xc4\xe3"
                          "A");
}

TEST(CArchive, GoesOneWay)
{
    int n = 0;
    EXPECT_EQ(CauseOf("abcdefgh", [&](CArchive& ar) { ar << n; }), CArchiveException::readOnly);
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    EXPECT_TRUE(Throws<CArchiveException>([&] { archive >> n; }));
    archive.Close();
    EXPECT_TRUE(Throws<CArchiveException>([&] { archive << n; }));
}

TEST(CArchive, KeepsItsBytesInOrderWhateverItsBuffer)
{
    std::mt19937 random(2);
    std::string pieces;
    std::vector<UINT> sizes;
    for (int i = 0; i < 200; i++) {
        sizes.push_back(random() % 600);
        pieces += std::string(sizes.back(), static_cast<char>(random()));
    }
    const auto store = [&](CArchive& ar) {
        const char* from = pieces.data();
        for (const UINT nSize : sizes) {
            ar.Write(from, nSize);
            from += nSize;
        }
    };
    EXPECT_TRUE(Stored(store, 1) == pieces);
    const auto load = [&](CArchive& ar) {
        std::string loaded(pieces.size() + 10, '\0');
        UINT nLoaded = 0;
        for (const UINT nSize : sizes)
            nLoaded += ar.Read(loaded.data() + nLoaded, nSize);
        EXPECT_EQ(nLoaded, pieces.size());
        EXPECT_EQ(ar.Read(loaded.data() + nLoaded, 10), 0U);
        EXPECT_TRUE(loaded.substr(0, nLoaded) == pieces);
    };
    EXPECT_EQ(CauseOf(pieces, load), CArchiveException::none);
}

TEST(CArchive, LeavesTheFileBehindWhatItLoaded)
{
    CMemFile file;
    file.Write("abcdefgh", 8);
    file.SeekToBegin();
    CArchive archive(&file, CArchive::load);
    int n = 0;
    archive >> n;
    archive.Close();
    EXPECT_EQ(file.GetPosition(), 4U);
}

TEST(CArchive, DropsWhatItCannotWriteWhenItGoes)
{
    BYTE small[2] = {};
    CMemFile file(small, sizeof(small));
    {
        CArchive archive(&file, CArchive::store);
        archive << 7;
        EXPECT_TRUE(Throws<CMemoryException>([&] { archive.Close(); }));
    }
    EXPECT_EQ(small[0], 0);
}

} // namespace
