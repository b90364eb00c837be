#include "tests/platform/win32/advapi/RegistryHome.h"
#include "tests/support/WaitUntil.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <memory>
#include <new>
#include <random>
#include <thread>

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace test {
namespace {

// Another program's connection to the hive.
class OtherProgram {
public:
    explicit OtherProgram(const RegistryHome& home)
    {
        EXPECT_EQ(sqlite3_open(home.hive.c_str(), &database_), SQLITE_OK);
    }
    ~OtherProgram() { sqlite3_close(database_); }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;
    void run(const char* sql) { EXPECT_EQ(sqlite3_exec(database_, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql; }

private:
    sqlite3* database_ = nullptr;
};

// Gives up root's rights over files for as long as it lives: root may write what is read-only.
class AsOrdinaryUser {
public:
    explicit AsOrdinaryUser(const RegistryHome& home) : was_(::geteuid())
    {
        constexpr uid_t kNobody = 65534;
        if (was_ != 0)
            return;
        for (std::filesystem::path up = home.dir.path().parent_path(); up != "/tmp" && up != "/"; up = up.parent_path())
            std::filesystem::permissions(up, std::filesystem::perms(0711)); // the way there
        EXPECT_EQ(::chown(home.dir.path().c_str(), kNobody, kNobody), 0);
        for (const auto& entry : std::filesystem::recursive_directory_iterator(home.dir.path()))
            EXPECT_EQ(::chown(entry.path().c_str(), kNobody, kNobody), 0);
        EXPECT_EQ(::seteuid(kNobody), 0);
    }
    ~AsOrdinaryUser() { EXPECT_EQ(::seteuid(was_), 0); }
    AsOrdinaryUser(const AsOrdinaryUser&) = delete;
    AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;

private:
    const uid_t was_;
};

TEST(Hive, WaitsOnceForALockAndThenHardly)
{
    const RegistryHome home;
    const OpenedKey key(kRunKey);
    OtherProgram other(home);
    struct {
        const char* lock;
        LSTATUS reading;
    } const locks[] = { { "BEGIN EXCLUSIVE", ERROR_LOCK_VIOLATION }, { "BEGIN IMMEDIATE", ERROR_SUCCESS } };
    for (const auto& locked : locks) {
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

TEST(Hive, LeavesWhatItCannotReadAlone)
{
    const RegistryHome sound;
    ASSERT_EQ(create_key("Software\\Dalvor"), ERROR_SUCCESS);
    const std::string whole = read_file(sound.hive);
    struct {
        const char* why;
        std::string bytes;
    } const hives[] = {
        { "is no database", std::string(5000, 'x') },
        { "is cut in a page", whole.substr(0, whole.size() / 2 + 100) },
        { "is overwritten behind its header", whole.substr(0, 200) + std::string(whole.size() - 200, 'x') },
        { "is of a later form", std::string(whole).replace(60, 4, std::string("\0\0\0\2", 4)) },
    };
    for (const auto& hive : hives) {
        SCOPED_TRACE(hive.why);
        const RegistryHome home;
        write_file(home.hive, hive.bytes);
        EXPECT_EQ(OpenedKey("Software\\Dalvor").status, ERROR_BADDB);
        EXPECT_EQ(create_key("Software\\Dalvor"), ERROR_BADDB);
        EXPECT_TRUE(read_file(home.hive) == hive.bytes);
    }
    const RegistryHome empty; // a new one that was killed before it had anything
    write_file(empty.hive, "");
    EXPECT_EQ(OpenedKey(kRunKey).status, ERROR_SUCCESS);
    const RegistryHome folder;
    std::filesystem::create_directories(folder.hive);
    EXPECT_EQ(OpenedKey(kRunKey).status, ERROR_ACCESS_DENIED);
    const RegistryHome file;
    write_file(file.hive.parent_path(), "in the folder's place");
    EXPECT_NE(OpenedKey(kRunKey).status, ERROR_SUCCESS);
}

TEST(Hive, ReadsWhatItMayNotWrite)
{
    const RegistryHome home;
    ASSERT_EQ(create_key("Software\\Dalvor"), ERROR_SUCCESS);
    ASSERT_EQ(OpenedKey("Software\\Dalvor").set("x", "old"), ERROR_SUCCESS);
    const RegistryHome elsewhere; // lets go of the first hive
    EXPECT_EQ(OpenedKey(kRunKey).status, ERROR_SUCCESS);
    std::filesystem::permissions(home.hive, std::filesystem::perms::owner_read);
    std::filesystem::permissions(home.hive.parent_path(),
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    home.enter();
    const AsOrdinaryUser user(home);
    const OpenedKey key("Software\\Dalvor");
    EXPECT_EQ(key.get("x"), "old");
    EXPECT_EQ(key.set("x", "new"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(create_key("Software\\Other"), ERROR_ACCESS_DENIED);
    std::filesystem::permissions(home.hive.parent_path(), std::filesystem::perms::owner_all);
    std::filesystem::remove(home.hive);
}

// A disk that is full after so many writes. SQLite's own file system with one fault.
std::atomic<int> writes_left;

// SQLite has methods of their own for the database and for its journal.
template <bool kDatabase>
void limit_writes(sqlite3_file* file)
{
    static const sqlite3_io_methods* const sound = file->pMethods;
    static const sqlite3_io_methods limited = [] {
        sqlite3_io_methods methods = *sound;
        methods.xWrite = [](sqlite3_file* to, const void* bytes, int size, sqlite3_int64 offset) {
            return writes_left-- > 0 ? sound->xWrite(to, bytes, size, offset) : SQLITE_FULL;
        };
        return methods;
    }();
    file->pMethods = &limited;
}

class FullDisk {
public:
    FullDisk() : sound_(sqlite3_vfs_find(nullptr)), full_(*sound_)
    {
        full_.zName = "full";
        full_.xOpen = [](sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* opened) {
            sqlite3_vfs* sound = sqlite3_vfs_find("unix");
            const int result = sound->xOpen(sound, name, file, flags, opened);
            if (file->pMethods)
                (flags & SQLITE_OPEN_MAIN_DB) ? limit_writes<true>(file) : limit_writes<false>(file);
            return result;
        };
        sqlite3_vfs_register(&full_, 1);
    }
    ~FullDisk()
    {
        sqlite3_vfs_register(sound_, 1);
        sqlite3_vfs_unregister(&full_);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

private:
    sqlite3_vfs* sound_;
    sqlite3_vfs full_;
};

TEST(Hive, KeepsOldValuesOnAFullDisk)
{
    const FullDisk disk;
    int room = 0;
    for (bool written = false; !written; room++) {
        SCOPED_TRACE(room);
        const RegistryHome home;
        writes_left = room;
        const LSTATUS made = create_key("Software\\Dalvor"); // in a hive that is new
        EXPECT_TRUE(made == ERROR_SUCCESS || made == ERROR_DISK_FULL) << made;
        writes_left = 1000;
        ASSERT_EQ(create_key("Software\\Dalvor"), ERROR_SUCCESS);
        const OpenedKey key("Software\\Dalvor");
        ASSERT_EQ(key.set("x", "old"), ERROR_SUCCESS);
        writes_left = room;
        const LSTATUS status = key.set("x", std::string(20000, 'n'));
        written = status == ERROR_SUCCESS;
        EXPECT_TRUE(written || status == ERROR_DISK_FULL) << status;
        writes_left = 1000;
        EXPECT_EQ(key.get("x"), written ? std::string(20000, 'n') : "old");
        EXPECT_EQ(key.set("x", "after"), ERROR_SUCCESS);

        const OpenedKey run(kRunKey);
        ASSERT_EQ(run.set("Client", "/opt/old"), ERROR_SUCCESS);
        writes_left = room;
        const bool stored = run.set("Client", "/opt/new") == ERROR_SUCCESS;
        writes_left = 1000;
        EXPECT_EQ(run.get("Client"), stored ? "/opt/new" : "/opt/old");
        EXPECT_NE(read_file(home.autostart / "Client.desktop").find(run.get("Client")), std::string::npos)
            << "the autostart entry goes with the value";
    }
    EXPECT_GT(room, 5);
    const RegistryHome lets_go;
    EXPECT_EQ(OpenedKey(kRunKey).status, ERROR_SUCCESS);
}

TEST(Hive, SurvivesKills)
{
    std::mt19937 random(1);
    auto* steps =
        new (::mmap(nullptr, sizeof(std::atomic<int>), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0))
            std::atomic<int>;
    const RegistryHome home;
    for (int i = 0; i < 20; i++) {
        *steps = 0;
        const int stop = static_cast<int>(random() % 10);
        const pid_t child = ::fork();
        if (child == 0) {
            create_key("Software\\Dalvor");
            const OpenedKey key("Software\\Dalvor");
            for (;; ++*steps)
                key.set("x", std::string(9000, static_cast<char>('a' + *steps % 26)));
        }
        ASSERT_TRUE(wait_until([&] { return *steps > stop; }));
        ::kill(child, SIGKILL);
        ASSERT_EQ(::waitpid(child, nullptr, 0), child);
        OtherProgram(home).run("PRAGMA integrity_check");
        const std::string value = OpenedKey("Software\\Dalvor").get("x");
        EXPECT_EQ(value, std::string(9000, value[0]));
        const RegistryHome elsewhere; // the next child must not inherit an open hive
        EXPECT_EQ(OpenedKey(kRunKey).status, ERROR_SUCCESS);
    }
    ::munmap(steps, sizeof *steps);
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
    const RegistryHome home;
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
