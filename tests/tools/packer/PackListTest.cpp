// What the packer refuses, and what it adds.
#include "tools/packer/PackList.h"
#include "tools/packer/Cabinet.h"

#include "client/install/FileList.h"

#include "tests/support/TestHome.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace {

using namespace packer;

// An .au sound of these samples.
std::string Sound(const std::string& strSamples)
{
    std::string strSound(".snd\0\0\0\x1C\0\0\0\0\0\0\0\x02\0\0\x1F\x40\0\0\0\x01rain", 28);
    strSound[11] = static_cast<char>(strSamples.size());
    return strSound + strSamples;
}

// Five entries with their list; the loop fills what the other two leave of a thousand bytes.
const PackRules kRules = { 5, 1000, { "Tesk\\Client.exe" }, "Tesk\\Temp\\null" };

std::vector<PackEntry> SmallPayload()
{
    return { { "Tesk\\Temp\\null", EntryKind::Data, {}, "" },
             { "Tesk\\Client.exe", EntryKind::Program, {}, "the client" },
             { "Tesk\\Data\\Rain.au", EntryKind::Loop, {}, Sound("abc") },
             { "Tesk\\Help\\Index.html", EntryKind::Data, {}, "<p>help</p>" } };
}

std::vector<PackEntry> CompletePayload()
{
    std::vector<PackEntry> entries = SmallPayload();
    std::string strError;
    EXPECT_TRUE(CompleteEntries(kRules, &entries, &strError)) << strError;
    return entries;
}

PackEntry& EntryNamed(std::vector<PackEntry>& entries, const std::string& strName)
{
    for (PackEntry& entry : entries) {
        if (entry.strName == strName)
            return entry;
    }
    ADD_FAILURE() << strName;
    return entries.front();
}

const struct {
    const char* why;
    std::string strNewName; // what Tesk\Help\Index.html is called instead
    const char* pszFault;   // part of the message
} kRefusals[] = {
    { "the same name in another case", "Tesk\\CLIENT.EXE", "clashes" },
    { "one folder in two spellings", "Tesk\\DATA\\Index.html", "clashes" },
    { "a file where another entry has a folder", "Tesk\\Data", "is a file and a folder" },
    { "a folder where another entry is a file", "Tesk\\Client.exe\\Index.html", "is a file and a folder" },
    { "climbs out", "Tesk\\..\\Index.html", "leaves its folder" },
    { "stands still", "Tesk\\.\\Index.html", "leaves its folder" },
    { "an empty folder name", "Tesk\\\\Index.html", "leaves its folder" },
    { "ends in a separator", "Tesk\\Help\\", "leaves its folder" },
    { "lies elsewhere", "Other\\Index.html", "does not begin" },
    { "another case of the folder", "tesk\\Index.html", "does not begin" },
    { "a drive", "Tesk\\C:\\Index.html", "holds a character" },
    { "a forward slash", "Tesk\\Help/Index.html", "holds a character" },
    { "not ASCII", "Tesk\\\xB0\xEF\xD6\xFA.html", "holds a character" },
    { "a control character", "Tesk\\Help\t.html", "holds a character" },
    { "a final dot, which some systems drop", "Tesk\\Help.", "ends in a dot" },
    { "a folder's final space", "Tesk\\Help \\a", "ends in a dot" },
    { "longer than a path has room for", "Tesk\\" + std::string(kMaxNameLength - 4, 'n'), "too long" },
};

TEST(PackList, RefusesAName)
{
    for (const auto& c : kRefusals) {
        SCOPED_TRACE(c.why);
        std::vector<PackEntry> entries = CompletePayload();
        EntryNamed(entries, "Tesk\\Help\\Index.html").strName = c.strNewName;
        std::string strError;
        EXPECT_FALSE(CheckEntries(kRules, entries, &strError));
        EXPECT_NE(strError.find(c.pszFault), std::string::npos) << strError;
    }
}

TEST(PackList, RefusesAWrongNumberSumOrMissingFile)
{
    std::string strError;
    EXPECT_TRUE(CheckEntries(kRules, CompletePayload(), &strError)) << strError;
    const struct {
        const char* pszFault;
        void (*spoil)(std::vector<PackEntry>& entries);
    } cases[] = {
        { "4 entries instead of 5", [](auto& entries) { entries.pop_back(); } },
        { "1001 bytes instead of 1000",
          [](auto& entries) { EntryNamed(entries, "Tesk\\Help\\Index.html").strBytes += '\n'; } },
        { "Tesk\\Client.exe: missing",
          [](auto& entries) { EntryNamed(entries, "Tesk\\Client.exe").strName = "Tesk\\Other.exe"; } },
        { "Tesk\\Temp\\null: missing or not empty",
          [](auto& entries) { EntryNamed(entries, "Tesk\\Temp\\null").strBytes = "x"; } },
    };
    for (const auto& c : cases) {
        std::vector<PackEntry> entries = CompletePayload();
        c.spoil(entries);
        EXPECT_FALSE(CheckEntries(kRules, entries, &strError));
        EXPECT_EQ(strError, c.pszFault);
    }
}

TEST(PackList, MakesUpTheTotalWithTheLoopAndListsEveryOtherFile)
{
    std::vector<PackEntry> entries = CompletePayload();
    const std::string& strSound = EntryNamed(entries, "Tesk\\Data\\Rain.au").strBytes;
    const std::size_t nSamples = strSound.size() - 28;
    EXPECT_EQ(static_cast<unsigned char>(strSound[10]) * 256 + static_cast<unsigned char>(strSound[11]), nSamples);
    for (std::size_t i = 0; i < nSamples; ++i)
        ASSERT_EQ(strSound[28 + i], "abc"[i % 3]) << i;

    const auto files = client::ParseFileList(EntryNamed(entries, std::string(kFileListEntry)).strBytes);
    ASSERT_TRUE(files.has_value());
    ASSERT_EQ(files->size(), 4u);
    for (const client::ListedFile& file : *files) {
        std::string strName = "Tesk\\" + file.strName;
        std::replace(strName.begin(), strName.end(), '/', '\\');
        const std::string& strBytes = EntryNamed(entries, strName).strBytes;
        EXPECT_EQ(file.nSize, strBytes.size()) << strName;
        EXPECT_EQ(file.strSha256, client::Sha256(strBytes)) << strName;
    }
}

const struct {
    const char* why;
    std::string strSound;
    const char* pszFault;
} kLoopCases[] = {
    { "not a sound", "hello", "not an .au sound" },
    { "no samples", Sound(""), "does not fit" },
    { "fewer samples than the header says", Sound("abc").substr(0, 30), "does not fit" },
    { "longer than what is left", Sound(std::string(100, 'x')), "leave it" },
};

TEST(PackList, RefusesALoopThatCannotMakeUpTheTotal)
{
    for (const auto& c : kLoopCases) {
        SCOPED_TRACE(c.why);
        std::string strSound = c.strSound;
        std::string strError;
        EXPECT_FALSE(ExtendLoop(100, &strSound, &strError));
        EXPECT_NE(strError.find(c.pszFault), std::string::npos) << strError;
    }
    std::vector<PackEntry> entries = SmallPayload();
    EntryNamed(entries, "Tesk\\Client.exe").strBytes.resize(1000);
    std::string strError;
    EXPECT_FALSE(CompleteEntries(kRules, &entries, &strError)) << "the others alone are more than the total";
    entries = SmallPayload();
    EntryNamed(entries, "Tesk\\Data\\Rain.au").kind = EntryKind::Data;
    EXPECT_FALSE(CompleteEntries(kRules, &entries, &strError)) << "no loop";
}

TEST(PackList, ReadsItsLines)
{
    const test::TempDir dir;
    test::write_file(dir / "list", "# the programs\n\nprogram\tTesk\\Client.exe\tclient\n");
    test::write_file(dir / "client", "bytes");
    std::vector<PackEntry> entries;
    std::string strError;
    ASSERT_TRUE(ReadPackList(dir / "list", &entries, &strError) && LoadSources(&entries, &strError)) << strError;
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].strName, "Tesk\\Client.exe");
    EXPECT_EQ(entries[0].kind, EntryKind::Program);
    EXPECT_EQ(entries[0].strBytes, "bytes");

    for (const char* pszLine : { "program Tesk\\Client.exe client", "script\tTesk\\a\tclient", "data\tTesk\\a" }) {
        test::write_file(dir / "list", pszLine);
        EXPECT_FALSE(ReadPackList(dir / "list", &entries, &strError)) << pszLine;
    }
    test::write_file(dir / "list", "data\tTesk\\a\tmissing\n");
    entries.clear();
    ASSERT_TRUE(ReadPackList(dir / "list", &entries, &strError));
    EXPECT_FALSE(LoadSources(&entries, &strError));
}

struct Packed {
    const std::vector<PackEntry> entries = CompletePayload();
    std::string strCabinet;
    std::string strError;

    Packed() { EXPECT_TRUE(WriteCabinet(entries, &strCabinet, &strError)) << strError; }
    bool Proves(const std::vector<PackEntry>& others, const std::string& strOther)
    {
        return ProveCabinet(kRules, others, strOther, &strError);
    }
};

TEST(Cabinet, ComesOutOfBothReadersAsItWentIn)
{
    Packed packed;
    EXPECT_TRUE(packed.Proves(packed.entries, packed.strCabinet)) << packed.strError;
    std::vector<PackEntry> others = packed.entries;
    others[0].strBytes.back() ^= 1;
    EXPECT_FALSE(packed.Proves(others, packed.strCabinet)) << "other bytes";
    others = packed.entries;
    others[0].kind = others[0].kind == EntryKind::Program ? EntryKind::Data : EntryKind::Program;
    EXPECT_FALSE(packed.Proves(others, packed.strCabinet)) << "another attribute";
    others = packed.entries;
    others[0].strName.back() ^= 1;
    EXPECT_FALSE(packed.Proves(others, packed.strCabinet)) << "another name";
}

TEST(Cabinet, IsRefusedWhenCutOrDamagedAnywhere)
{
    Packed packed;
    const std::string& strCabinet = packed.strCabinet;
    for (std::size_t nLength = 0; nLength < strCabinet.size(); ++nLength)
        EXPECT_FALSE(packed.Proves(packed.entries, strCabinet.substr(0, nLength))) << nLength;
    for (std::size_t nAt = strCabinet.size() - 40; nAt < strCabinet.size(); ++nAt) {
        std::string strDamaged = strCabinet;
        strDamaged[nAt] ^= 0x10;
        EXPECT_FALSE(packed.Proves(packed.entries, strDamaged)) << nAt;
    }
}

} // namespace
