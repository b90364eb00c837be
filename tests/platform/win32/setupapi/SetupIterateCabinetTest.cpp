#include "tests/platform/win32/setupapi/Unpacking.h"
#include "tests/support/CabinetBuilder.h"
#include "tests/support/DamagedFileSystem.h"
#include "tests/support/PackedCabinet.h"
#include "tests/support/WaitUntil.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstring>
#include <ctime>
#include <new>
#include <random>

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>

namespace test {
namespace {

using Files = std::map<std::string, std::string>;
using Log = std::vector<std::string>;

// Content of a given length that no other place of a cabinet repeats.
std::string content(std::size_t length, unsigned seed)
{
    std::mt19937 random(seed);
    std::string bytes(length, 0);
    for (char& byte : bytes)
        byte = static_cast<char>(random() % 40 + 'A');
    return bytes;
}

// A small installation, as version `version` of a product.
std::vector<CabinetFile> product(unsigned version)
{
    return { { "Tesk\\Client.exe", content(70000, version), 0x60 },
             { "Tesk\\Data\\Config.xml", content(300, version + 1) },
             { "Tesk\\Temp\\null", "" },
             { "Tesk\\Data\\Fonts\\a.pfb", content(40000, version + 2) },
             { "ReadMe", content(10, version + 3) } };
}

std::string native(std::string name)
{
    std::replace(name.begin(), name.end(), '\\', '/');
    return name;
}

Files files_of(const std::vector<CabinetFile>& files)
{
    Files expected;
    for (const CabinetFile& file : files)
        expected[native(file.name)] = file.content;
    return expected;
}

// What must hold after any cabinet: nothing beside the target, no temporaries, every file one that was announced.
void expect_contained(const Unpacking& unpacking)
{
    std::vector<std::string> beside;
    for (const auto& entry : std::filesystem::directory_iterator(unpacking.place.path()))
        beside.push_back(entry.path().filename());
    EXPECT_LE(beside.size(), 2U) << testing::PrintToString(beside);
    for (const auto& [name, bytes] : files_below(unpacking.target))
        EXPECT_EQ(name.find(".unpack-"), std::string::npos) << name;
}

// The same, and each file stands whole, as one of the two versions.
void expect_old_or_new(const Files& found, const Files& old_files, const Files& new_files)
{
    for (const auto& [name, bytes] : found) {
        const auto older = old_files.find(name), newer = new_files.find(name);
        EXPECT_TRUE((older != old_files.end() && older->second == bytes) ||
                    (newer != new_files.end() && newer->second == bytes))
            << name << " holds " << bytes.size() << " bytes of neither version";
    }
}

TEST(SetupIterateCabinet, AnnouncesAndCopiesInOrder)
{
    for (const std::string& cabinet : { stored_cabinet(product(1)), packed_cabinet(product(1)) }) {
        Unpacking unpacking(cabinet);
        unpacking.answer = [](const FILE_IN_CABINET_INFO_A& info) {
            EXPECT_EQ(info.DosDate, (28 << 9) | (5 << 5) | 1);
            EXPECT_EQ(info.DosTime, 12 << 11);
            EXPECT_EQ(info.FileSize == 70000, info.DosAttribs == 0x60);
            return FILEOP_DOCOPY;
        };
        EXPECT_EQ(unpacking.run().error, NO_ERROR);
        EXPECT_EQ(unpacking.log, (Log{ "+Tesk\\Client.exe", "=0", "+Tesk\\Data\\Config.xml", "=0", "+Tesk\\Temp\\null",
                                       "=0", "+Tesk\\Data\\Fonts\\a.pfb", "=0", "+ReadMe", "=0" }));
        EXPECT_EQ(files_below(unpacking.target), files_of(product(1)));
        struct stat client {
        }, readme{};
        ASSERT_EQ(::stat((unpacking.target / "Tesk/Client.exe").c_str(), &client), 0);
        ASSERT_EQ(::stat((unpacking.target / "ReadMe").c_str(), &readme), 0);
        EXPECT_TRUE(client.st_mode & S_IXUSR);
        EXPECT_FALSE(readme.st_mode & S_IXUSR);
        const struct tm* local = ::localtime(&readme.st_mtime);
        EXPECT_EQ(std::vector({ local->tm_year, local->tm_mon, local->tm_mday, local->tm_hour, local->tm_min }),
                  std::vector({ 108, 4, 1, 12, 0 }));
    }
}

TEST(SetupIterateCabinet, DoesWhatTheCallbackAnswers)
{
    const std::string cabinet = packed_cabinet(product(1));
    Unpacking skipping(cabinet);
    skipping.answer = [](const auto& info) { return info.FileSize > 1000 ? FILEOP_SKIP : FILEOP_DOCOPY; };
    EXPECT_EQ(skipping.run().error, NO_ERROR);
    Files expected = files_of(product(1));
    expected.erase("Tesk/Client.exe");
    expected.erase("Tesk/Data/Fonts/a.pfb");
    EXPECT_EQ(files_below(skipping.target), expected);

    Unpacking aborting(cabinet);
    aborting.answer = [](const auto& info) { return info.FileSize == 0 ? FILEOP_ABORT : FILEOP_DOCOPY; };
    EXPECT_EQ(aborting.run().error, ERROR_CANCELLED);
    EXPECT_EQ(files_below(aborting.target).size(), 2U) << "what came before the end stays";

    EXPECT_FALSE(SetupIterateCabinetA((aborting.place / "missing").c_str(), 0, &Unpacking::callback, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(SetupIterateCabinetA((aborting.place / "cabinet").c_str(), 0, nullptr, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

// The entry between two good ones. Both of those must come out whole, whatever it is.
struct HostileEntry {
    const char* why;
    CabinetRecord record;
    const char* outcome; // the middle of the log; empty: never announced
    DWORD error;         // of the walk
};
const HostileEntry kHostileEntries[] = {
    { "climbs out", { "..\\evil", 3, 2 }, "", ERROR_INVALID_NAME },
    { "climbs out further in", { "a\\..\\..\\evil", 3, 2 }, "", ERROR_INVALID_NAME },
    { "climbs out with the other separator", { "a/../../evil", 3, 2 }, "", ERROR_INVALID_NAME },
    { "is the folder above", { "a\\..", 3, 2 }, "", ERROR_INVALID_NAME },
    { "names a drive", { "C:\\evil", 3, 2 }, "", ERROR_INVALID_NAME },
    { "names a drive's current folder", { "C:evil", 3, 2 }, "", ERROR_INVALID_NAME },
    { "begins with a separator", { "\\tmp\\evil", 3, 2 }, "", ERROR_INVALID_NAME },
    { "begins with the other separator", { "/tmp/evil", 3, 2 }, "", ERROR_INVALID_NAME },
    { "is only separators", { "\\\\\\", 3, 2 }, "", ERROR_INVALID_NAME },
    { "ends in the second byte of a character", { "a\\\xD5\x5C", 3, 2 }, "", ERROR_INVALID_NAME },
    { "holds the second byte of a character", { "a\\\xD5\x5C.txt", 3, 2 }, "=0", NO_ERROR },
    { "has a component too long for any disk", { std::string(255, 'n'), 3, 2 }, "=206", NO_ERROR },
    { "comes twice", { "first", 3, 2 }, "=0", NO_ERROR },
    { "takes a file for a folder", { "standing\\x", 3, 2 }, "=3", NO_ERROR },
    { "takes a folder for a file", { "folder", 3, 2 }, "=5", NO_ERROR },
    { "shares the first one's bytes", { "x", 4, 1 }, "=13", NO_ERROR },
    { "is longer than the data", { "x", 9999, 2 }, "=13", NO_ERROR },
    { "lies in the middle of nowhere", { "x", 3, 0x7FFFFFFF }, "=13", NO_ERROR },
    { "is empty and lies nowhere", { "x", 0, 0x7FFFFFFF }, "=0", NO_ERROR },
    { "has a date that is none", { "x", 3, 2, 0, 0x20, 0, 0xFFFF }, "=0", NO_ERROR },
};

TEST(SetupIterateCabinet, SurvivesHostileEntries)
{
    for (const HostileEntry& hostile : kHostileEntries) {
        SCOPED_TRACE(hostile.why);
        // the good ones have a folder of their own: damage in the first folder is not theirs
        Unpacking unpacking(cabinet_of({ "112223", "33" }, { { "first", 2, 0 }, hostile.record, { "last", 2, 0, 1 } }));
        write_file(unpacking.target / "standing", "old");
        std::filesystem::create_directory(unpacking.target / "folder");
        unpacking.run();
        EXPECT_EQ(unpacking.error, hostile.error);
        const std::string outcome = hostile.outcome;
        EXPECT_EQ(std::count(unpacking.log.begin(), unpacking.log.end(), joined("+", hostile.record.name)) > 0,
                  !outcome.empty());
        EXPECT_TRUE(outcome.empty() || std::count(unpacking.log.begin(), unpacking.log.end(), outcome) > 0)
            << testing::PrintToString(unpacking.log);
        const Files files = files_below(unpacking.target);
        EXPECT_EQ(files.at("first"), hostile.record.name == "first" ? "222" : "11");
        EXPECT_EQ(files.at("last"), "33");
        EXPECT_EQ(files.at("standing"), "old");
        expect_contained(unpacking);
    }
}

TEST(SetupIterateCabinet, KeepsTargetsTooLongForTheRecordOut)
{
    Unpacking unpacking(stored_cabinet({ { std::string(150, 'n'), "1" }, { "last", "2" } }));
    unpacking.target /= std::string(120, 'd');
    std::filesystem::create_directory(unpacking.target);
    EXPECT_EQ(unpacking.run().error, NO_ERROR);
    EXPECT_EQ(unpacking.log[1], "=206");
    EXPECT_EQ(files_below(unpacking.target), (Files{ { "last", "2" } }));
    // 300 bytes are more than the format has room for: no entry can be told from the next
    EXPECT_EQ(Unpacking(stored_cabinet({ { std::string(300, 'n'), "1" } })).run().error, ERROR_INVALID_DATA);
}

TEST(SetupIterateCabinet, TakesLinksForWhatTheyAre)
{
    Unpacking unpacking(stored_cabinet({ { "link", "new" }, { "elsewhere\\x", "new" } }));
    write_file(unpacking.place / "outside", "old");
    std::filesystem::create_symlink(unpacking.place / "outside", unpacking.target / "link");
    std::filesystem::create_directory(unpacking.place / "moved");
    std::filesystem::create_symlink(unpacking.place / "moved", unpacking.target / "elsewhere");
    EXPECT_EQ(unpacking.run().error, NO_ERROR);
    EXPECT_EQ(read_file(unpacking.place / "outside"), "old");
    EXPECT_EQ(read_file(unpacking.target / "link"), "new");
    EXPECT_EQ(read_file(unpacking.place / "moved/x"), "new") << "a folder the user moved stays in use";
}

// For tests with thousands of files that no power cut threatens.
std::shared_ptr<DamagedFileSystem> without_flushes()
{
    auto fast = std::make_shared<DamagedFileSystem>();
    fast->flushes = false;
    return fast;
}

TEST(SetupIterateCabinet, ReadsAnyNumberOfEntries)
{
    const FileSystemInPlace in_place(without_flushes());
    std::vector<CabinetFile> many;
    many.reserve(20000);
    for (int i = 0; i < 20000; i++)
        many.push_back({ joined("d", std::to_string(i % 7)) + joined("\\f", std::to_string(i)), std::to_string(i) });
    Unpacking unpacking(stored_cabinet(many));
    unpacking.answer = [](const auto& info) { return info.FileSize == 5 ? FILEOP_SKIP : FILEOP_DOCOPY; };
    EXPECT_EQ(unpacking.run().error, NO_ERROR);
    EXPECT_EQ(std::count_if(unpacking.log.begin(), unpacking.log.end(), [](auto& line) { return line[0] == '+'; }),
              20000);
    EXPECT_EQ(files_below(unpacking.target), files_of({ many.begin(), many.begin() + 10000 }));

    // all of one long folder's entries, from its end to its beginning: each would unpack everything before it anew
    std::vector<CabinetRecord> backwards;
    backwards.reserve(20000);
    for (std::uint32_t i = 0; i < 20000; i++)
        backwards.push_back({ joined("f", std::to_string(i)), 100, (19999 - i) * 100 });
    unpacking.replace_cabinet(cabinet_of({ content(2000000, 1) }, backwards));
    unpacking.answer = [](const auto& info) {
        return std::strlen(info.NameInCabinet) < 5 ? FILEOP_DOCOPY : FILEOP_SKIP;
    };
    EXPECT_EQ(unpacking.run().error, NO_ERROR);
    EXPECT_EQ(read_file(unpacking.target / "f1"), content(2000000, 1).substr(1999800, 100));

    EXPECT_EQ(Unpacking(cabinet_of({}, {})).run().log, Log());
    EXPECT_EQ(Unpacking("").run().error, ERROR_INVALID_DATA);
}

const std::vector<CabinetFile> kTwoFiles = { { "a\\one", content(200, 1) }, { "a\\two", content(90, 2) } };

TEST(SetupIterateCabinet, SurvivesCutsAtEveryByte)
{
    const FileSystemInPlace in_place(without_flushes());
    for (const std::string& cabinet : { stored_cabinet(kTwoFiles), packed_cabinet(kTwoFiles) }) {
        for (std::size_t size = 0; size < cabinet.size(); size++) {
            SCOPED_TRACE(size);
            Unpacking unpacking(cabinet.substr(0, size));
            unpacking.run();
            expect_contained(unpacking);
            expect_old_or_new(files_below(unpacking.target), {}, files_of(kTwoFiles));
        }
    }
}

TEST(SetupIterateCabinet, SurvivesRandomDamage)
{
    const FileSystemInPlace in_place(without_flushes());
    std::mt19937 random(20080501);
    const std::string whole[] = { stored_cabinet(kTwoFiles), packed_cabinet(kTwoFiles), packed_cabinet(product(1)) };
    for (int i = 0; i < 1000; i++) {
        SCOPED_TRACE(i);
        std::string cabinet = whole[i % 3];
        for (std::size_t flips = random() % 4 + 1; flips > 0; flips--)
            cabinet[random() % (random() % 2 ? cabinet.size() : 120)] ^= static_cast<char>(1 << random() % 8);
        Unpacking unpacking(cabinet);
        std::map<std::string, DWORD> announced;
        unpacking.answer = [&](const auto& info) {
            announced[native(info.NameInCabinet)] = info.FileSize;
            return FILEOP_DOCOPY;
        };
        unpacking.run();
        expect_contained(unpacking);
        for (const auto& [name, bytes] : files_below(unpacking.target))
            EXPECT_EQ(bytes.size(), announced[name]) << name;
    }
}

TEST(SetupIterateCabinet, LeavesOldOrNewFilesWhateverTheDiskRefuses)
{
    const Files old_files = files_of(product(1)), new_files = files_of(product(7));
    const std::string old_cabinet = packed_cabinet(product(1)), new_cabinet = packed_cabinet(product(7));
    for (const bool nameless_files : { true, false }) {
        for (const bool stays_broken : { true, false }) {
            int fail_at = -1; // the first round is the sound one and counts the changes
            int changes = 0;
            do {
                SCOPED_TRACE(fail_at);
                Unpacking unpacking(old_cabinet);
                {
                    const FileSystemInPlace in_place(without_flushes());
                    unpacking.run();
                }
                unpacking.replace_cabinet(new_cabinet);
                const auto damaged = without_flushes();
                damaged->fail_at = fail_at;
                damaged->stays_broken = stays_broken;
                damaged->nameless_files = nameless_files;
                {
                    const FileSystemInPlace in_place(damaged);
                    unpacking.run();
                }
                const Files found = files_below(unpacking.target);
                EXPECT_EQ(unpacking.log.size(), 10U) << "the walk goes on";
                EXPECT_EQ(found.size(), 5U);
                expect_old_or_new(found, old_files, new_files);
                const bool told = unpacking.error == ERROR_DISK_FULL ||
                                  std::count(unpacking.log.begin(), unpacking.log.end(), "=112") > 0;
                EXPECT_TRUE(told || found == new_files) << "a file is missing and nobody said so";
                changes = std::max(changes, damaged->changes.load());
            } while (++fail_at < changes);
            EXPECT_GT(changes, 20);
        }
    }
}

// A child that installs the two versions in turn until it is killed, and counts its steps where its parent sees them.
void reinstall_for_ever(Unpacking& unpacking, std::atomic<int>& steps)
{
    unpacking.answer = [&](const auto&) {
        steps++;
        return FILEOP_DOCOPY;
    };
    for (unsigned version = 7;; version = 8 - version) {
        unpacking.replace_cabinet(packed_cabinet(product(version)));
        unpacking.run();
    }
}

TEST(SetupIterateCabinet, SurvivesKills)
{
    std::mt19937 random(1);
    auto* steps =
        new (::mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
            std::atomic<int>;
    Unpacking unpacking(packed_cabinet(product(1)));
    unpacking.run();
    for (int i = 0; i < 50; i++) {
        *steps = 0;
        const int stop = static_cast<int>(random() % 40);
        const pid_t child = ::fork();
        if (child == 0)
            reinstall_for_ever(unpacking, *steps);
        ASSERT_TRUE(wait_until([&] { return *steps > stop; }));
        ::kill(child, SIGKILL);
        ASSERT_EQ(::waitpid(child, nullptr, 0), child);
        Files found = files_below(unpacking.target);
        std::erase_if(found, [](const auto& file) { return file.first.find(".unpack-") != std::string::npos; });
        EXPECT_EQ(found.size(), 5U);
        expect_old_or_new(found, files_of(product(1)), files_of(product(7)));
    }
    write_file(unpacking.target / "Tesk/Data/.unpack-0123456789abcdef", "left by one that was killed");
    unpacking.replace_cabinet(packed_cabinet(product(7)));
    EXPECT_EQ(unpacking.run().error, NO_ERROR);
    EXPECT_EQ(files_below(unpacking.target), files_of(product(7))) << "nothing is left behind for good";
    ::munmap(steps, sizeof *steps);
}

TEST(SetupIterateCabinet, LetsTwoInstallersAtOnceEndWell)
{
    const auto named = without_flushes(); // each sees the other's temporaries for as long as they grow
    named->nameless_files = false;
    const FileSystemInPlace in_place(named);
    Unpacking unpacking(packed_cabinet(product(1)));
    const pid_t child = ::fork();
    if (child == 0) {
        bool good = true;
        for (int i = 0; i < 20; i++)
            good = unpacking.run().error == NO_ERROR &&
                   std::count(unpacking.log.begin(), unpacking.log.end(), "=0") == 5 && good;
        ::_exit(good ? 0 : 1);
    }
    for (int i = 0; i < 20; i++) {
        EXPECT_EQ(unpacking.run().error, NO_ERROR);
        EXPECT_EQ(std::count(unpacking.log.begin(), unpacking.log.end(), "=0"), 5);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(files_below(unpacking.target), files_of(product(1)));
}

} // namespace
} // namespace test
