// The current user's hive: keys and values in one SQLite file, $XDG_CONFIG_HOME/registry/current-user.sqlite. For a
// person: sqlite3 current-user.sqlite 'select * from registry'.
#pragma once

#include "platform/win32/advapi/database.h"
#include "windef.h"
#include "winreg.h"

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace win32 {

struct RegistryValue {
    std::string name;
    DWORD type = 0;
    std::string bytes;
};

// A sub-key as it is listed: its own name, and when it or a value of it was last written, in 100 ns since 1601.
struct RegistrySubKey {
    std::string name;
    std::uint64_t written = 0;
};

// Keys are named by their folded paths, "" for the root. Results are error numbers, ERROR_SUCCESS first. Nothing here
// deletes or replaces a hive, whatever state it is in; one that somebody removed, under SQLite's lock, is begun anew.
// Safe from any thread; processes share it by SQLite's locks.
class Hive {
public:
    LSTATUS find_key(const std::string& key);
    // Makes what is missing of the way from `key` down `components`.
    LSTATUS create_key(const std::string& key, const std::vector<std::string>& components);
    // Refuses a key with sub-keys: ERROR_ACCESS_DENIED.
    LSTATUS delete_key(const std::string& key);
    LSTATUS sub_key_at(const std::string& key, DWORD index, RegistrySubKey& sub_key);

    LSTATUS set_value(const std::string& key, const RegistryValue& value);
    LSTATUS delete_value(const std::string& key, const std::string& name);
    LSTATUS find_value(const std::string& key, const std::string& name, RegistryValue& value);
    LSTATUS value_at(const std::string& key, DWORD index, RegistryValue& value);

private:
    using Work = std::function<LSTATUS()>;

    LSTATUS read(const Work& work);
    // Runs `work` as one transaction: all of it is kept, or nothing.
    LSTATUS write(const Work& work);
    LSTATUS open();
    bool is_removed();
    LSTATUS make_schema();
    LSTATUS execute(const char* sql);
    LSTATUS finish(Statement& statement);
    LSTATUS fetch(Statement& statement, const std::string& key, LSTATUS if_none);
    LSTATUS failure(int result);

    LSTATUS exists(const std::string& key);
    LSTATUS make_way(const std::string& key, const std::vector<std::string>& components);
    LSTATUS touch(const std::string& key);
    LSTATUS note_run_value(const std::string& name);

    std::mutex mutex_;
    Database database_;
    std::string path_;    // of the open file
    bool patient_ = true; // false after a lock outlasted our patience, until a write succeeds again

    // What the values of the Run key were that the current transaction changes: their autostart entries go back to that
    // if it fails, which is no time to ask the file.
    struct RunChange {
        std::string name;
        std::optional<RegistryValue> before;
    };
    std::vector<RunChange> run_changes_;
};

Hive& current_user_hive();

} // namespace win32
