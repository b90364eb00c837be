#include "tests/platform/win32/advapi/Registry.h"
#include "tests/support/KilledChild.h"

#include <chrono>
#include <random>
#include <thread>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace test {
namespace {

namespace fs = std::filesystem;

// Another program's connection to the hive.
class OtherProgram {
public:
    OtherProgram() { EXPECT_EQ(sqlite3_open(hive_file().c_str(), &database_), SQLITE_OK); }
    ~OtherProgram() { sqlite3_close(database_); }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;
    void run(const char* sql) { EXPECT_EQ(sqlite3_exec(database_, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql; }

private:
    sqlite3* database_ = nullptr;
};

// Makes the process open another home's hive, and so let go of this one's.
void look_elsewhere()
{
    const FreshHome elsewhere;
    EXPECT_EQ(OpenedKey(kRunKey).status, ERROR_SUCCESS);
}

TEST(Hive, WaitsOnceForALockAndThenHardly)
{
    const OpenedKey key(kRunKey);
    OtherProgram other;
    const struct {
        const char* lock;
        LSTATUS reading;
    } kLocks[] = { { "BEGIN EXCLUSIVE", ERROR_LOCK_VIOLATION }, { "BEGIN IMMEDIATE", ERROR_SUCCESS } };
    for (const auto& locked : kLocks) {
        SCOPED_TRACE(locked.lock);
        other.run(locked.lock);
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(OpenedKey(kRunKey).status, locked.reading);
        for (int i = 0; i < 11; i++)
            EXPECT_EQ(key.set("x", "y", REG_BINARY), ERROR_LOCK_VIOLATION);
        EXPECT_EQ(OpenedKey(kRunKey).status, locked.reading);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4));
        EXPECT_GT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1900));
        other.run("ROLLBACK");
        EXPECT_EQ(key.set("x", "y", REG_BINARY), ERROR_SUCCESS);
    }
}

// As Uninstall does it: under the lock that a writer waits for.
TEST(Hive, IsBegunAnewWhereItWasRemoved)
{
    ASSERT_EQ(OpenedKey(kRunKey).set("x", "old", REG_BINARY), ERROR_SUCCESS);
    const OpenedKey key(kRunKey);
    auto other = std::make_unique<OtherProgram>();
    other->run("BEGIN EXCLUSIVE");
    std::thread writer([&] { EXPECT_EQ(key.set("y", "new", REG_BINARY), ERROR_SUCCESS); });
    fs::remove(hive_file());
    other.reset();
    writer.join();
    EXPECT_EQ(key.get("x"), "missing");
    EXPECT_EQ(key.get("y"), "new");
    fs::remove_all(hive_file().parent_path());
    EXPECT_EQ(key.get("y"), "missing") << "also for readers";
    EXPECT_TRUE(fs::exists(hive_file()));
}

TEST(Hive, LeavesWhatItCannotReadAlone)
{
    ASSERT_EQ(create_key("Software\\Dalvor"), ERROR_SUCCESS);
    const std::string whole = read_file(hive_file());
    const struct {
        const char* why;
        std::string bytes;
        LSTATUS status;
    } kHives[] = {
        { "no database", std::string(5000, 'x'), ERROR_BADDB },
        { "cut in a page", whole.substr(0, whole.size() / 2 + 100), ERROR_BADDB },
        { "overwritten behind its header", whole.substr(0, 200) + std::string(whole.size() - 200, 'x'), ERROR_BADDB },
        { "of a later form", std::string(whole).replace(60, 4, std::string("\0\0\0\2", 4)), ERROR_BADDB },
        { "killed before it had anything", "", ERROR_SUCCESS },
    };
    for (const auto& hive : kHives) {
        SCOPED_TRACE(hive.why);
        const FreshHome home;
        write_file(hive_file(), hive.bytes);
        EXPECT_EQ(OpenedKey(kRunKey).status, hive.status);
        EXPECT_EQ(create_key("Software\\Dalvor"), hive.status);
        EXPECT_TRUE(hive.status == ERROR_SUCCESS || read_file(hive_file()) == hive.bytes);
    }
    const FreshHome folder;
    fs::create_directories(hive_file());
    EXPECT_EQ(OpenedKey(kRunKey).status, ERROR_ACCESS_DENIED);
    const FreshHome file;
    write_file(hive_file().parent_path(), "in the folder's place");
    EXPECT_NE(OpenedKey(kRunKey).status, ERROR_SUCCESS);
}

TEST(Hive, ReadsWhatItMayNotWrite)
{
    ASSERT_EQ(create_key("Software\\Dalvor"), ERROR_SUCCESS);
    ASSERT_EQ(OpenedKey("Software\\Dalvor").set("x", "old"), ERROR_SUCCESS);
    look_elsewhere();
    const fs::path folder = hive_file().parent_path();
    fs::permissions(hive_file(), fs::perms::owner_read);
    fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
    const uid_t user = ::geteuid();
    constexpr uid_t kNobody = 65534;
    if (user == 0) { // root may write what is read-only
        for (fs::path up = folder.parent_path(); up != "/tmp" && up != "/"; up = up.parent_path())
            fs::permissions(up, fs::perms(0711)); // the way there
        for (const fs::path& owned : { folder, hive_file() })
            EXPECT_EQ(::chown(owned.c_str(), kNobody, kNobody), 0);
        EXPECT_EQ(::seteuid(kNobody), 0);
    }
    const OpenedKey key("Software\\Dalvor");
    EXPECT_EQ(key.get("x"), "old");
    EXPECT_EQ(key.set("x", "new"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(create_key("Software\\Other"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(::seteuid(user), 0);
}

// A disk that is full after so many writes of SQLite's.
std::atomic<int> writes_left;

ssize_t write_while_there_is_room(int descriptor, const void* bytes, std::size_t size, off_t offset)
{
    if (writes_left-- > 0)
        return ::pwrite(descriptor, bytes, size, offset);
    errno = ENOSPC;
    return -1;
}

TEST(Hive, KeepsOldValuesOnAFullDisk)
{
    sqlite3_vfs* const disk = sqlite3_vfs_find(nullptr);
    ASSERT_EQ(disk->xSetSystemCall(disk, "pwrite64", reinterpret_cast<sqlite3_syscall_ptr>(write_while_there_is_room)),
              SQLITE_OK);
    int room = 0;
    for (bool written = false; !written; room++) {
        SCOPED_TRACE(room);
        const FreshHome home;
        writes_left = room;
        const LSTATUS made = create_key("Software\\Dalvor"); // in a hive that is new
        EXPECT_TRUE(made == ERROR_SUCCESS || made == ERROR_DISK_FULL) << made;
        writes_left = 1000;
        ASSERT_EQ(create_key("Software\\Dalvor"), ERROR_SUCCESS);
        const OpenedKey key("Software\\Dalvor"), run(kRunKey);
        ASSERT_EQ(key.set("x", "old"), ERROR_SUCCESS);
        writes_left = room;
        const LSTATUS status = key.set("x", std::string(20000, 'n'));
        written = status == ERROR_SUCCESS;
        EXPECT_TRUE(written || status == ERROR_DISK_FULL) << status;
        writes_left = 1000;
        EXPECT_EQ(key.get("x"), written ? std::string(20000, 'n') : "old");
        EXPECT_EQ(key.set("x", "after"), ERROR_SUCCESS);

        ASSERT_EQ(run.set("Client", "/opt/old"), ERROR_SUCCESS);
        writes_left = room;
        const bool stored = run.set("Client", "/opt/new") == ERROR_SUCCESS;
        writes_left = 1000;
        EXPECT_EQ(run.get("Client"), stored ? "/opt/new" : "/opt/old");
        EXPECT_NE(read_file(config_folder() / "autostart/Client.desktop").find(run.get("Client")), std::string::npos)
            << "the autostart entry goes with the value";
    }
    EXPECT_GT(room, 5);
    disk->xSetSystemCall(disk, "pwrite64", nullptr);
}

TEST(Hive, SurvivesKills)
{
    std::mt19937 random(1);
    for (int i = 0; i < 20; i++) {
        kill_after(static_cast<int>(random() % 10), [](std::atomic<int>& steps) {
            create_key("Software\\Dalvor");
            const OpenedKey key("Software\\Dalvor");
            for (;; ++steps)
                key.set("x", std::string(9000, static_cast<char>('a' + steps % 26)));
        });
        OtherProgram().run("PRAGMA integrity_check");
        const std::string value = OpenedKey("Software\\Dalvor").get("x");
        EXPECT_EQ(value, std::string(9000, value[0]));
        look_elsewhere(); // the next child must not inherit an open hive
    }
}

// Ten values of its own, while somebody else writes theirs.
bool write_ten(const char* prefix)
{
    const OpenedKey key(kRunKey);
    bool good = key.status == ERROR_SUCCESS;
    for (int i = 0; i < 10; i++)
        good = key.set((prefix + std::to_string(i)).c_str(), prefix, REG_BINARY) == ERROR_SUCCESS && good;
    return good;
}

TEST(Hive, IsSharedByProcessesAndThreads)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(write_ten("child") ? 0 : 1);
    bool from_thread = false;
    std::thread worker([&] { from_thread = write_ten("worker"); });
    EXPECT_TRUE(write_ten("own"));
    worker.join();
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(from_thread);
    const OpenedKey key(kRunKey);
    EXPECT_EQ(key.get("child9") + key.get("worker9") + key.get("own9"), "childworkerown");
}

} // namespace
} // namespace test
