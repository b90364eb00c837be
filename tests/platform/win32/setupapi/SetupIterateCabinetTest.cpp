#include "setupapi.h"
#include "tests/support/CabinetBuilder.h"
#include "tests/support/FailingFileSystem.h"
#include "tests/support/KilledChild.h"
#include "tests/support/PackedCabinet.h"
#include "tests/support/TestHome.h"
#include "winbase.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <functional>
#include <map>
#include <random>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace test {
namespace {

using Files = std::map<std::string, std::string>;
using Log = std::vector<std::string>;

// Every file below a folder, by its path from there.
Files files_below(const std::filesystem::path& folder)
{
    Files files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (!entry.is_directory())
            files[entry.path().lexically_relative(folder)] = read_file(entry.path());
    }
    return files;
}

// Unpacks a cabinet as the installer does: folders made along the raw name, folder and name copied into the target
// without counting. Keeps what was said on the way.
struct Unpacking {
    // A place of its own: "cabinet" and the folder "target" beside it, and nothing else unless something breaks out.
    TempDir place;
    std::filesystem::path target = place.path() / "target";
    std::function<UINT(const FILE_IN_CABINET_INFO_A&)> answer = [](const auto&) { return FILEOP_DOCOPY; };
    Log log;                // "+name" for an entry announced, "=error" for one done with
    DWORD error = NO_ERROR; // of the walk

    explicit Unpacking(const std::string& cabinet)
    {
        std::filesystem::create_directory(target);
        replace_cabinet(cabinet);
    }
    void replace_cabinet(const std::string& cabinet) const { write_file(place.path() / "cabinet", cabinet); }

    Unpacking& run()
    {
        log.clear();
        const BOOL walked = SetupIterateCabinetA((place / "cabinet").c_str(), 0, &Unpacking::callback, this);
        error = walked ? NO_ERROR : GetLastError();
        return *this;
    }

    // How often the log says this.
    auto said(const std::string& line) const { return std::count(log.begin(), log.end(), line); }

    static UINT CALLBACK callback(PVOID context, UINT notification, UINT_PTR param1, UINT_PTR)
    {
        auto* self = static_cast<Unpacking*>(context);
        if (notification == SPFILENOTIFY_FILEINCABINET)
            return self->announce(*reinterpret_cast<FILE_IN_CABINET_INFO_A*>(param1));
        self->log.push_back("=" + std::to_string(reinterpret_cast<const FILEPATHS_A*>(param1)->Win32Error));
        return NO_ERROR;
    }

    UINT announce(FILE_IN_CABINET_INFO_A& info)
    {
        const std::string name = info.NameInCabinet;
        log.push_back("+" + name);
        for (std::size_t i = 0; (i = name.find('\\', i)) != std::string::npos; i++)
            CreateDirectoryA((target.string() + "\\" + name.substr(0, i)).c_str(), nullptr);
        lstrcpyA(info.FullTargetName, (target.string() + "\\" + name).c_str());
        return answer(info);
    }
};

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

// What must hold after any cabinet: nothing beside it and the target, no temporaries.
void expect_contained(const Unpacking& unpacking)
{
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(unpacking.place.path()), {}), 2);
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
            EXPECT_EQ(info.DosDate, (46 << 9) | (11 << 5) | 1);
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
                  std::vector({ 126, 10, 1, 12, 0 }));
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
        EXPECT_EQ(unpacking.said("+" + hostile.record.name) > 0, !outcome.empty());
        EXPECT_TRUE(outcome.empty() || unpacking.said(outcome) > 0) << testing::PrintToString(unpacking.log);
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

TEST(SetupIterateCabinet, ReadsAnyNumberOfEntries)
{
    const WithoutFlushes fast;
    std::vector<CabinetFile> many(20000);
    for (std::size_t i = 0; i < many.size(); i++)
        many[i] = { "d" + std::to_string(i % 7) + "\\f" + std::to_string(i), std::to_string(i) };
    Unpacking unpacking(stored_cabinet(many));
    unpacking.answer = [](const auto& info) { return info.FileSize == 5 ? FILEOP_SKIP : FILEOP_DOCOPY; };
    EXPECT_EQ(unpacking.run().error, NO_ERROR);
    EXPECT_EQ(unpacking.log.size(), 30000U) << "all were announced";
    EXPECT_EQ(files_below(unpacking.target), files_of({ many.begin(), many.begin() + 10000 }));

    // all of one long folder's entries, from its end to its beginning: each would unpack everything before it anew
    std::vector<CabinetRecord> backwards(20000);
    for (std::uint32_t i = 0; i < 20000; i++)
        backwards[i] = { "f" + std::to_string(i), 100, (19999 - i) * 100 };
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
    const WithoutFlushes fast;
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
    const WithoutFlushes fast;
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

// Whatever one change to the disk is refused, or all from there on, every file is the old one or the new one.
TEST(SetupIterateCabinet, LeavesOldOrNewFilesWhateverTheDiskRefuses)
{
    const Files old_files = files_of(product(1)), new_files = files_of(product(7));
    const std::string old_cabinet = packed_cabinet(product(1)), new_cabinet = packed_cabinet(product(7));
    const WithoutFlushes disk;
    const auto sound = disk->fault;
    for (int way = 0; way < 4; way++) {
        const bool stays_broken = way % 2 == 1;
        disk->nameless_files = way < 2;
        std::atomic<int> changes = 0; // the first round is the sound one and counts them
        for (int fail_at = -1, most = 0; fail_at < std::max(most, 20); fail_at++) {
            SCOPED_TRACE(testing::Message() << "way " << way << ", change " << fail_at);
            Unpacking unpacking(old_cabinet);
            disk->fault = sound;
            unpacking.run();
            unpacking.replace_cabinet(new_cabinet);
            changes = 0;
            disk->fault = [&](FileCall call) {
                const int change = changes++;
                const bool fills_the_disk = call == FileCall::write || call == FileCall::sync;
                const bool broken = stays_broken && fills_the_disk && fail_at >= 0 && change > fail_at;
                return change == fail_at || broken ? ENOSPC : 0;
            };
            unpacking.run();
            most = std::max(most, changes.load());
            const Files found = files_below(unpacking.target);
            EXPECT_EQ(unpacking.log.size(), 10U) << "the walk goes on";
            EXPECT_EQ(found.size(), 5U);
            expect_old_or_new(found, old_files, new_files);
            const bool told = unpacking.error == ERROR_DISK_FULL || unpacking.said("=112") > 0;
            EXPECT_TRUE(told || found == new_files) << "a file is missing and nobody said so";
        }
    }
}

TEST(SetupIterateCabinet, SurvivesKills)
{
    std::mt19937 random(1);
    Unpacking unpacking(packed_cabinet(product(1)));
    unpacking.run();
    for (int i = 0; i < 50; i++) {
        kill_after(static_cast<int>(random() % 40), [&](std::atomic<int>& steps) {
            unpacking.answer = [&](const auto&) {
                steps++;
                return FILEOP_DOCOPY;
            };
            for (unsigned version = 7;; version = 8 - version) {
                unpacking.replace_cabinet(packed_cabinet(product(version)));
                unpacking.run();
            }
        });
        Files found = files_below(unpacking.target);
        std::erase_if(found, [](const auto& file) { return file.first.find(".unpack-") != std::string::npos; });
        EXPECT_EQ(found.size(), 5U);
        expect_old_or_new(found, files_of(product(1)), files_of(product(7)));
    }
    write_file(unpacking.target / "Tesk/Data/.unpack-0123456789abcdef", "left by one that was killed");
    unpacking.replace_cabinet(packed_cabinet(product(7)));
    EXPECT_EQ(unpacking.run().error, NO_ERROR);
    EXPECT_EQ(files_below(unpacking.target), files_of(product(7))) << "nothing is left behind for good";
}

TEST(SetupIterateCabinet, LetsTwoInstallersAtOnceEndWell)
{
    const WithoutFlushes disk;
    disk->nameless_files = false; // each sees the other's temporaries for as long as they grow
    Unpacking unpacking(packed_cabinet(product(1)));
    const pid_t child = ::fork();
    int bad = 0;
    for (int i = 0; i < 20; i++)
        bad += unpacking.run().error != NO_ERROR || unpacking.said("=0") != 5;
    if (child == 0)
        ::_exit(bad);
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(bad, 0);
    EXPECT_EQ(status, 0);
    EXPECT_EQ(files_below(unpacking.target), files_of(product(1)));
}

} // namespace
} // namespace test
