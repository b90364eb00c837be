// The payload that the build made, and whether another build would make the same.
#include "assets/Payload.h"
#include "client/install/FileList.h"
#include "tools/packer/Cabinet.h"

#include "tests/support/TestHome.h"

#include <algorithm>
#include <cstdlib>
#include <map>

#include <gtest/gtest.h>

namespace {

using test::read_file;

std::map<std::string, std::string> Unpacked()
{
    std::vector<packer::CabinetMember> members;
    std::string strError;
    EXPECT_TRUE(packer::ReadByLibarchive(read_file(PAYLOAD_CABINET), &members, &strError)) << strError;
    std::map<std::string, std::string> files;
    for (packer::CabinetMember& member : members)
        files.emplace(std::move(member.strName), std::move(member.strBytes));
    return files;
}

TEST(Payload, IsListedToTheByte)
{
    const std::map<std::string, std::string> files = Unpacked();
    ASSERT_EQ(files.size(), kPayloadFiles);
    const auto listed = client::ParseFileList(files.at("Tesk\\Data\\Files.lst"));
    ASSERT_TRUE(listed.has_value());
    EXPECT_EQ(listed->size(), kPayloadFiles - 1) << "every file but the list itself";
    std::uint64_t nSum = files.at("Tesk\\Data\\Files.lst").size();
    for (const client::ListedFile& file : *listed) {
        std::string strName = "Tesk\\" + file.strName;
        std::replace(strName.begin(), strName.end(), '/', '\\');
        const std::string& strBytes = files.at(strName);
        EXPECT_EQ(strBytes.size(), file.nSize) << strName;
        EXPECT_EQ(client::Sha256(strBytes), file.strSha256) << strName;
        nSum += file.nSize;
    }
    EXPECT_EQ(nSum, kPayloadBytes);
}

TEST(Payload, IsWhatItsNamesSay)
{
    const std::map<std::string, std::string> beginnings = {
        { ".png", "\x89PNG" }, { ".wav", "RIFF" },  { ".au", ".snd" },
        { ".exe", "\177ELF" }, { ".xml", "<?xml" }, { ".html", "<!DOCTYPE html>" },
    };
    std::size_t nRecognised = 0;
    for (const auto& [strName, strBytes] : Unpacked()) {
        const auto kind = beginnings.find(std::filesystem::path(strName).extension());
        EXPECT_TRUE(kind == beginnings.end() || strBytes.starts_with(kind->second)) << strName;
        nRecognised += kind != beginnings.end();
    }
    EXPECT_GT(nRecognised, 290u);
}

TEST(Payload, IsPackedAlikeInAnotherPlace)
{
    const test::TempDir dir;
    const std::string strAgain = dir / "again.cab";
    const std::string strCommand = std::string("cd / && umask 077 && TZ=Asia/Shanghai LC_ALL=C SOURCE_DATE_EPOCH=1 ") +
                                   PACKER + " " + strAgain + " " + CONTENTS_LIST + " " + PROGRAMS_LIST + " > /dev/null";
    ASSERT_EQ(std::system(strCommand.c_str()), 0);
    EXPECT_TRUE(read_file(strAgain) == read_file(PAYLOAD_CABINET));
}

TEST(Payload, HasTheSameContentsWhenMadeAgain)
{
    const test::TempDir dir;
    const std::string strCommand = std::string("cd / && umask 077 && TZ=Asia/Shanghai LC_ALL=C ") + PAYLOAD_TOOL + " " +
                                   PAYLOAD_SOURCES + " " + FONTS + " " + dir.path().string();
    ASSERT_EQ(std::system(strCommand.c_str()), 0);
    EXPECT_EQ(read_file(dir / "payload.lst"), read_file(CONTENTS_LIST));
    const std::filesystem::path first = std::filesystem::path(CONTENTS_LIST).parent_path();
    for (const auto& entry : std::filesystem::recursive_directory_iterator(dir.path() / "Tesk")) {
        const std::filesystem::path name = entry.path().lexically_relative(dir.path());
        EXPECT_TRUE(entry.is_directory() || read_file(entry.path()) == read_file(first / name)) << name;
    }
}

TEST(Payload, LeavesNoCabinetWhenItIsRefused)
{
    const test::TempDir dir;
    const std::string strOutput = dir / "payload.cab";
    test::write_file(strOutput, "an older one");
    const std::string strCommand =
        std::string(PACKER) + " " + strOutput + " " + PROGRAMS_LIST + " > /dev/null 2>&1"; // the contents are missing
    EXPECT_NE(std::system(strCommand.c_str()), 0);
    EXPECT_TRUE(std::filesystem::is_empty(dir.path()));
}

} // namespace
