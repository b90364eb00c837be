// What the packer refuses, and what it adds.
#include "tools/packer/PackList.h"
#include "tools/packer/Cabinet.h"

#include "client/install/FileList.h"

#include "tests/support/TestHome.h"

#include <algorithm>
#include <fstream>

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

struct RefusalCase {
    const char* why;
    const char* pszNewName; // what Tesk\Help\Index.html is called instead
    const char* pszFault;   // part of the message
};

const RefusalCase kRefusals[] = {
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
    { "longer than a path has room for",
      "Tesk\\0123456789012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789",
      "too long" },
};

TEST(PackList, RefusesAName)
{
    for (const RefusalCase& c : kRefusals) {
        SCOPED_TRACE(c.why);
        std::vector<PackEntry> entries = CompletePayload();
        EntryNamed(entries, "Tesk\\Help\\Index.html").strName = c.pszNewName;
        std::string strError;
        EXPECT_FALSE(CheckEntries(kRules, entries, &strError));
        EXPECT_NE(strError.find(c.pszFault), std::string::npos) << strError;
    }
}

TEST(PackList, RefusesAWrongNumberSumOrMissingFile)
{
    std::string strError;
    EXPECT_TRUE(CheckEntries(kRules, CompletePayload(), &strError)) << strError;

    std::vector<PackEntry> entries = CompletePayload();
    entries.pop_back();
    EXPECT_FALSE(CheckEntries(kRules, entries, &strError));
    EXPECT_EQ(strError, "4 entries instead of 5");

    entries = CompletePayload();
    EntryNamed(entries, "Tesk\\Help\\Index.html").strBytes += '\n';
    EXPECT_FALSE(CheckEntries(kRules, entries, &strError));
    EXPECT_EQ(strError, "1001 bytes instead of 1000");

    entries = CompletePayload();
    EntryNamed(entries, "Tesk\\Client.exe").strName = "Tesk\\Other.exe";
    EXPECT_FALSE(CheckEntries(kRules, entries, &strError));
    EXPECT_EQ(strError, "Tesk\\Client.exe: missing");

    entries = CompletePayload();
    EntryNamed(entries, "Tesk\\Temp\\null").strBytes = "x";
    EXPECT_FALSE(CheckEntries(kRules, entries, &strError));
    EXPECT_EQ(strError, "Tesk\\Temp\\null: missing or not empty");
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

struct LoopCase {
    const char* why;
    std::string strSound;
    const char* pszFault;
};

const LoopCase kLoopCases[] = {
    { "not a sound", "hello", "not an .au sound" },
    { "no samples", Sound(""), "does not fit" },
    { "fewer samples than the header says", Sound("abc").substr(0, 30), "does not fit" },
    { "longer than what is left", Sound(std::string(100, 'x')), "leave it" },
};

TEST(PackList, RefusesALoopThatCannotMakeUpTheTotal)
{
    for (const LoopCase& c : kLoopCases) {
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
    std::ofstream(dir / "list") << "# the programs\n\nprogram\tTesk\\Client.exe\tclient\n";
    std::ofstream(dir / "client") << "bytes";
    std::vector<PackEntry> entries;
    std::string strError;
    ASSERT_TRUE(ReadPackList(dir / "list", &entries, &strError) && LoadSources(&entries, &strError)) << strError;
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].strName, "Tesk\\Client.exe");
    EXPECT_EQ(entries[0].kind, EntryKind::Program);
    EXPECT_EQ(entries[0].strBytes, "bytes");

    for (const char* pszLine : { "program Tesk\\Client.exe client", "script\tTesk\\a\tclient", "data\tTesk\\a" }) {
        std::ofstream(dir / "list") << pszLine << '\n';
        EXPECT_FALSE(ReadPackList(dir / "list", &entries, &strError)) << pszLine;
    }
    std::ofstream(dir / "list") << "data\tTesk\\a\tmissing\n";
    entries.clear();
    ASSERT_TRUE(ReadPackList(dir / "list", &entries, &strError));
    EXPECT_FALSE(LoadSources(&entries, &strError));
}

TEST(Cabinet, ComesOutOfBothReadersAsItWentIn)
{
    const std::vector<PackEntry> entries = CompletePayload();
    std::string strCabinet;
    std::string strError;
    ASSERT_TRUE(WriteCabinet(entries, &strCabinet, &strError)) << strError;
    EXPECT_TRUE(ProveCabinet(kRules, entries, strCabinet, &strError)) << strError;

    std::vector<PackEntry> others = entries;
    others[0].strBytes.back() ^= 1;
    EXPECT_FALSE(ProveCabinet(kRules, others, strCabinet, &strError)) << "other bytes";
    others = entries;
    others[0].kind = others[0].kind == EntryKind::Program ? EntryKind::Data : EntryKind::Program;
    EXPECT_FALSE(ProveCabinet(kRules, others, strCabinet, &strError)) << "another attribute";
    others = entries;
    std::swap(others[0], others[1]);
    EXPECT_FALSE(ProveCabinet(kRules, others, strCabinet, &strError)) << "another order";
}

TEST(Cabinet, IsRefusedWhenCutOrDamagedAnywhere)
{
    const std::vector<PackEntry> entries = CompletePayload();
    std::string strCabinet;
    std::string strError;
    ASSERT_TRUE(WriteCabinet(entries, &strCabinet, &strError)) << strError;
    for (std::size_t nLength = 0; nLength < strCabinet.size(); ++nLength)
        EXPECT_FALSE(ProveCabinet(kRules, entries, strCabinet.substr(0, nLength), &strError)) << nLength;
    for (std::size_t nAt = strCabinet.size() - 40; nAt < strCabinet.size(); ++nAt) {
        std::string strDamaged = strCabinet;
        strDamaged[nAt] ^= 0x10;
        EXPECT_FALSE(ProveCabinet(kRules, entries, strDamaged, &strError)) << nAt;
    }
}

} // namespace
