#include "platform/win32/advapi/hive.h"

#include "platform/win32/advapi/autostart.h"
#include "platform/win32/advapi/key_path.h"
#include "platform/win32/kernel/desktop_folders.h"
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/never_destroyed.h"
#include "winbase.h"

#include <cerrno>
#include <chrono>
#include <optional>
#include <utility>

namespace win32 {

namespace {

// How long a lock of another process is waited for. Once that was in vain, later calls hardly wait: eleven values in a
// row must not cost eleven times as much.
constexpr int kPatienceMs = 2000;
constexpr int kImpatienceMs = 50;

constexpr int kMostOpenings = 3; // for one write, of files that somebody removes

constexpr std::int64_t kVersion = 1;

// `folded` is what names are compared by. The view is for people.
constexpr const char* kSchema = R"(
    CREATE TABLE registry_key (
        folded TEXT PRIMARY KEY, parent TEXT, name TEXT NOT NULL, path TEXT NOT NULL, written INTEGER NOT NULL
        ) WITHOUT ROWID;
    CREATE INDEX sub_keys ON registry_key (parent, folded);
    CREATE TABLE registry_value (
        key TEXT NOT NULL, folded TEXT NOT NULL, name TEXT NOT NULL, type INTEGER NOT NULL, data BLOB NOT NULL,
        PRIMARY KEY (key, folded)) WITHOUT ROWID;
    CREATE VIEW registry AS SELECT path AS key, registry_value.name AS name,
        CASE type WHEN 0 THEN 'REG_NONE' WHEN 1 THEN 'REG_SZ' WHEN 2 THEN 'REG_EXPAND_SZ' WHEN 3 THEN 'REG_BINARY'
            WHEN 4 THEN 'REG_DWORD' WHEN 7 THEN 'REG_MULTI_SZ' ELSE type END AS type,
        length(data) AS size,
        CASE WHEN type IN (1, 2) THEN CAST(data AS TEXT)
            WHEN type = 4 AND length(data) = 4 THEN '0x' || hex(substr(data, 4, 1)) || hex(substr(data, 3, 1)) ||
                hex(substr(data, 2, 1)) || hex(substr(data, 1, 1))
            ELSE hex(data) END AS data
        FROM registry_value JOIN registry_key ON registry_key.folded = registry_value.key;
    INSERT INTO registry_key VALUES ('', NULL, '', '', 0);
    PRAGMA user_version = 1;
)";

const std::vector<std::string>& run_key_components()
{
    static NeverDestroyed<std::vector<std::string>> components(
        std::vector<std::string>{ "Software", "Microsoft", "Windows", "CurrentVersion", "Run" });
    return components.get();
}
constexpr const char* kRunKey = "software\\microsoft\\windows\\currentversion\\run";

std::int64_t now()
{
    using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
    constexpr std::int64_t kFrom1601To1970 = 116'444'736'000'000'000;
    return std::chrono::duration_cast<Ticks>(std::chrono::system_clock::now().time_since_epoch()).count() +
           kFrom1601To1970;
}

std::string joined(const std::string& parent, const std::string& component)
{
    return parent.empty() ? component : parent + '\\' + component;
}

LSTATUS status_of_errno(int error)
{
    return static_cast<LSTATUS>(error_from_errno(error));
}

// Of a row of name, type and data.
RegistryValue row_value(Statement& row)
{
    return { row.bytes(0), static_cast<DWORD>(row.number(1)), row.bytes(2) };
}

// Makes the autostart entry what a value of the Run key says: a text is started, anything else is not.
LSTATUS mirror_run_value(const std::string& name, const std::optional<RegistryValue>& value)
{
    return status_of_errno(value && value->type == REG_SZ ? write_autostart_entry(name, value->bytes)
                                                          : remove_autostart_entry(name));
}

} // namespace

Hive& current_user_hive()
{
    static NeverDestroyed<Hive> hive;
    return hive.get();
}

LSTATUS Hive::find_key(const std::string& key)
{
    return read([&] { return exists(key); });
}

LSTATUS Hive::create_key(const std::string& key, const std::vector<std::string>& components)
{
    return write([&] { return make_way(key, components); });
}

LSTATUS Hive::make_way(const std::string& key, const std::vector<std::string>& components)
{
    std::string parent = key;
    for (std::size_t i = 0;; i++) {
        Statement find(database_.get(), "SELECT path FROM registry_key WHERE folded = ?");
        find.bind(1, parent);
        if (const LSTATUS status = fetch(find, "", ERROR_KEY_DELETED);
            status != ERROR_SUCCESS || i == components.size())
            return status;
        const std::string path = joined(find.bytes(0), components[i]);
        const std::string child = joined(parent, folded(components[i]));
        Statement make(database_.get(), "INSERT OR IGNORE INTO registry_key VALUES (?, ?, ?, ?, ?)");
        make.bind(1, child).bind(2, parent).bind(3, components[i]).bind(4, path).bind(5, now());
        if (const LSTATUS status = finish(make); status != ERROR_SUCCESS)
            return status;
        parent = child;
    }
}

LSTATUS Hive::delete_key(const std::string& key)
{
    return write([&]() -> LSTATUS {
        if (const LSTATUS status = exists(key); status != ERROR_SUCCESS)
            return status;
        Statement child(database_.get(), "SELECT 1 FROM registry_key WHERE parent = ?");
        if (const LSTATUS status = fetch(child.bind(1, key), "", ERROR_NO_MORE_ITEMS); status != ERROR_NO_MORE_ITEMS)
            return status == ERROR_SUCCESS ? static_cast<LSTATUS>(ERROR_ACCESS_DENIED) : status;
        Statement list(database_.get(), "SELECT name, type, data FROM registry_value WHERE key = ?");
        list.bind(1, key);
        while (key == kRunKey && list.step() == SQLITE_ROW)
            run_changes_.push_back({ list.bytes(0), row_value(list) });
        for (const char* sql :
             { "DELETE FROM registry_value WHERE key = ?", "DELETE FROM registry_key WHERE folded = ?" }) {
            Statement remove(database_.get(), sql);
            if (const LSTATUS status = finish(remove.bind(1, key)); status != ERROR_SUCCESS)
                return status;
        }
        LSTATUS status = ERROR_SUCCESS;
        for (std::size_t i = 0; i < run_changes_.size() && status == ERROR_SUCCESS; i++)
            status = mirror_run_value(run_changes_[i].name, std::nullopt);
        return status;
    });
}

LSTATUS Hive::sub_key_at(const std::string& key, DWORD index, RegistrySubKey& sub_key)
{
    return read([&] {
        Statement find(database_.get(),
                       "SELECT name, written FROM registry_key WHERE parent = ? ORDER BY folded LIMIT 1 OFFSET ?");
        find.bind(1, key).bind(2, std::int64_t{ index });
        const LSTATUS status = fetch(find, key, ERROR_NO_MORE_ITEMS);
        if (status == ERROR_SUCCESS)
            sub_key = { find.bytes(0), static_cast<std::uint64_t>(find.number(1)) };
        return status;
    });
}

LSTATUS Hive::set_value(const std::string& key, const RegistryValue& value)
{
    return write([&] {
        if (const LSTATUS status = touch(key); status != ERROR_SUCCESS)
            return status;
        if (const LSTATUS status = key == kRunKey ? note_run_value(value.name) : LSTATUS{ ERROR_SUCCESS };
            status != ERROR_SUCCESS)
            return status;
        const std::string name = folded(value.name);
        Statement store(database_.get(), "INSERT INTO registry_value VALUES (?1, ?2, ?3, ?4, ?5) "
                                         "ON CONFLICT (key, folded) DO UPDATE SET type = ?4, data = ?5");
        store.bind(1, key).bind(2, name).bind(3, value.name).bind(4, std::int64_t{ value.type });
        store.bind_bytes(5, value.bytes);
        if (const LSTATUS status = finish(store); status != ERROR_SUCCESS)
            return status;
        return key == kRunKey ? mirror_run_value(run_changes_.back().name, value) : LSTATUS{ ERROR_SUCCESS };
    });
}

LSTATUS Hive::delete_value(const std::string& key, const std::string& name)
{
    return write([&] {
        if (const LSTATUS status = key == kRunKey ? note_run_value(name) : LSTATUS{ ERROR_SUCCESS };
            status != ERROR_SUCCESS)
            return status;
        if (const LSTATUS status = touch(key); status != ERROR_SUCCESS)
            return status;
        const std::string wanted = folded(name);
        Statement remove(database_.get(), "DELETE FROM registry_value WHERE key = ? AND folded = ?");
        if (const LSTATUS status = finish(remove.bind(1, key).bind(2, wanted)); status != ERROR_SUCCESS)
            return status;
        if (sqlite3_changes(database_.get()) == 0)
            return LSTATUS{ ERROR_FILE_NOT_FOUND };
        return key == kRunKey ? mirror_run_value(run_changes_.back().name, std::nullopt) : LSTATUS{ ERROR_SUCCESS };
    });
}

LSTATUS Hive::find_value(const std::string& key, const std::string& name, RegistryValue& value)
{
    return read([&] {
        const std::string wanted = folded(name);
        Statement find(database_.get(), "SELECT name, type, data FROM registry_value WHERE key = ? AND folded = ?");
        const LSTATUS status = fetch(find.bind(1, key).bind(2, wanted), key, ERROR_FILE_NOT_FOUND);
        if (status == ERROR_SUCCESS)
            value = row_value(find);
        return status;
    });
}

LSTATUS Hive::value_at(const std::string& key, DWORD index, RegistryValue& value)
{
    return read([&] {
        Statement find(database_.get(),
                       "SELECT name, type, data FROM registry_value WHERE key = ? ORDER BY folded LIMIT 1 OFFSET ?");
        const LSTATUS status = fetch(find.bind(1, key).bind(2, std::int64_t{ index }), key, ERROR_NO_MORE_ITEMS);
        if (status == ERROR_SUCCESS)
            value = row_value(find);
        return status;
    });
}

LSTATUS Hive::read(const Work& work)
{
    const std::lock_guard lock(mutex_);
    const LSTATUS status = open();
    return status == ERROR_SUCCESS ? work() : status;
}

LSTATUS Hive::write(const Work& work)
{
    const std::lock_guard lock(mutex_);
    int openings = 0;
    do { // with the lock the file stays where it is; until then it may go
        if (openings++ == kMostOpenings)
            return ERROR_LOCK_VIOLATION;
        if (const LSTATUS status = open(); status != ERROR_SUCCESS)
            return status;
        if (const LSTATUS status = execute("BEGIN IMMEDIATE"); status != ERROR_SUCCESS)
            return status;
    } while (is_removed());
    run_changes_.clear();
    LSTATUS status = work();
    if (status == ERROR_SUCCESS)
        status = execute("COMMIT");
    if (status == ERROR_SUCCESS) {
        patient_ = true;
        return status;
    }
    if (!sqlite3_get_autocommit(database_.get()))
        (void)execute("ROLLBACK"); // what cannot be rolled back now is, before anyone reads the file again
    for (const RunChange& change : run_changes_)
        (void)mirror_run_value(change.name, change.before); // the first failure is what counts
    return status;
}

LSTATUS Hive::open()
{
    const std::optional<std::string> config = config_folder();
    if (!config)
        return ERROR_PATH_NOT_FOUND;
    const std::string folder = *config + "/registry";
    const std::string path = folder + "/current-user.sqlite";
    if (!database_ || path != path_ || is_removed()) {
        database_.reset();
        if (const int made = make_folder_path(folder); made != 0)
            return status_of_errno(made);
        sqlite3* opened = nullptr;
        const int result = sqlite3_open_v2(path.c_str(), &opened,
                                           SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
        database_.reset(opened);
        if (std::exchange(path_, path) != path)
            patient_ = true; // another file, another lock
        sqlite3_busy_timeout(opened, patient_ ? kPatienceMs : kImpatienceMs);
        const LSTATUS status = result == SQLITE_OK ? make_schema() : failure(result);
        if (status != ERROR_SUCCESS)
            database_.reset();
        return status;
    }
    sqlite3_busy_timeout(database_.get(), patient_ ? kPatienceMs : kImpatienceMs);
    return ERROR_SUCCESS;
}

// Whether the open file is no longer in its place: what is written to it nobody reads.
bool Hive::is_removed()
{
    int removed = 0;
    return sqlite3_file_control(database_.get(), nullptr, SQLITE_FCNTL_HAS_MOVED, &removed) == SQLITE_OK && removed;
}

// Brings a file that is new to the form that this code reads; refuses any other.
LSTATUS Hive::make_schema()
{
    const auto version = [&](std::int64_t& number) {
        Statement ask(database_.get(), "PRAGMA user_version");
        const LSTATUS status = fetch(ask, "", ERROR_BADDB);
        number = ask.number(0);
        return status;
    };
    std::int64_t found = 0;
    if (const LSTATUS status = version(found); status != ERROR_SUCCESS || found == kVersion)
        return status;
    if (found != 0)
        return ERROR_BADDB;
    if (const LSTATUS status = execute("BEGIN IMMEDIATE"); status != ERROR_SUCCESS)
        return status;
    LSTATUS status = version(found);
    if (status == ERROR_SUCCESS && found == 0) // nobody else has made it meanwhile
        status = execute(kSchema);
    if (status == ERROR_SUCCESS)
        status = make_way("", run_key_components());
    return status == ERROR_SUCCESS ? execute("COMMIT") : status;
}

LSTATUS Hive::execute(const char* sql)
{
    return failure(sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr));
}

LSTATUS Hive::finish(Statement& statement)
{
    const int result = statement.step();
    return result == SQLITE_DONE ? static_cast<LSTATUS>(ERROR_SUCCESS) : failure(result);
}

// Steps to the first row. If there is none the key may be gone: then that is the answer.
LSTATUS Hive::fetch(Statement& statement, const std::string& key, LSTATUS if_none)
{
    const int result = statement.step();
    if (result == SQLITE_ROW)
        return ERROR_SUCCESS;
    if (result != SQLITE_DONE)
        return failure(result);
    if (key.empty())
        return if_none;
    const LSTATUS status = exists(key);
    return status == ERROR_SUCCESS          ? if_none
           : status == ERROR_FILE_NOT_FOUND ? static_cast<LSTATUS>(ERROR_KEY_DELETED)
                                            : status;
}

LSTATUS Hive::exists(const std::string& key)
{
    Statement find(database_.get(), "SELECT 1 FROM registry_key WHERE folded = ?");
    return fetch(find.bind(1, key), "", ERROR_FILE_NOT_FOUND);
}

LSTATUS Hive::touch(const std::string& key)
{
    Statement update(database_.get(), "UPDATE registry_key SET written = ? WHERE folded = ?");
    if (const LSTATUS status = finish(update.bind(1, now()).bind(2, key)); status != ERROR_SUCCESS)
        return status;
    return sqlite3_changes(database_.get()) ? ERROR_SUCCESS : ERROR_KEY_DELETED;
}

// To be called before a value of the Run key changes.
LSTATUS Hive::note_run_value(const std::string& name)
{
    const std::string wanted = folded(name);
    Statement find(database_.get(), "SELECT name, type, data FROM registry_value WHERE key = ? AND folded = ?");
    const LSTATUS status = fetch(find.bind(1, kRunKey).bind(2, wanted), "", ERROR_FILE_NOT_FOUND);
    if (status == ERROR_FILE_NOT_FOUND)
        run_changes_.push_back({ name, std::nullopt });
    else if (status == ERROR_SUCCESS)
        run_changes_.push_back({ find.bytes(0), row_value(find) });
    return status == ERROR_FILE_NOT_FOUND ? LSTATUS{ ERROR_SUCCESS } : status;
}

LSTATUS Hive::failure(int result)
{
    switch (result & 0xFF) {
    case SQLITE_OK:
        return ERROR_SUCCESS;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        patient_ = false;
        return ERROR_LOCK_VIOLATION;
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return ERROR_ACCESS_DENIED;
    case SQLITE_FULL:
        return ERROR_DISK_FULL;
    case SQLITE_NOMEM:
    case SQLITE_TOOBIG:
        return ERROR_NOT_ENOUGH_MEMORY;
    case SQLITE_CANTOPEN:
        return status_of_errno(sqlite3_system_errno(database_.get()));
    case SQLITE_IOERR:
        return sqlite3_system_errno(database_.get()) == ENOSPC ? ERROR_DISK_FULL : ERROR_REGISTRY_IO_FAILED;
    default:
        return ERROR_BADDB; // no database, a damaged one, or one of another form
    }
}

} // namespace win32
