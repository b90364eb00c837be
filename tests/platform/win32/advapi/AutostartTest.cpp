#include "platform/win32/advapi/autostart.h"
#include "tests/platform/win32/advapi/RegistryHome.h"
#include "tests/support/DamagedFileSystem.h"

#include <set>
#include <vector>

#include <glib.h>
#include <gtest/gtest.h>

namespace test {
namespace {

// What a desktop reads from an entry.
struct ReadEntry {
    std::string name;
    std::string try_exec;
    std::vector<std::string> command;
};

std::string key_of(GKeyFile* file, const char* key)
{
    char* value = g_key_file_get_string(file, "Desktop Entry", key, nullptr);
    std::string text = value ? value : "missing";
    g_free(value);
    return text;
}

// A desktop puts nothing for a code like "%f", and one "%" for two.
std::string without_field_codes(std::string word)
{
    for (std::size_t i = 0; (i = word.find('%', i)) != std::string::npos;) {
        const bool doubled = word.compare(i, 2, "%%") == 0;
        word.replace(i, 2, doubled ? "%" : "");
        i += doubled;
    }
    return word;
}

ReadEntry read_entry(const std::filesystem::path& path)
{
    const std::string validate = "desktop-file-validate '" + path.string() + "'";
    EXPECT_EQ(std::system(validate.c_str()), 0) << read_file(path);
    GKeyFile* file = g_key_file_new();
    EXPECT_TRUE(g_key_file_load_from_file(file, path.c_str(), G_KEY_FILE_NONE, nullptr)) << path;
    ReadEntry entry = { key_of(file, "Name"), key_of(file, "TryExec"), {} };
    int count = 0;
    char** words = nullptr;
    EXPECT_TRUE(g_shell_parse_argv(key_of(file, "Exec").c_str(), &count, &words, nullptr)) << read_file(path);
    for (int i = 0; i < count; i++)
        entry.command.push_back(without_field_codes(words[i]));
    g_strfreev(words);
    g_key_file_free(file);
    return entry;
}

TEST(Autostart, StartsWhatTheRunValueNames)
{
    const RegistryHome home;
    write_file(home.dir / "a b/client", "");
    const std::string spaced = (home.dir / "a b/client"), spaced_text = (home.dir / "a b") + "\\client";
    struct {
        std::string data;
        std::vector<std::string> command;
    } const cases[] = {
        { "/opt/v\\Tesk\\PelkVarnhal.exe" + std::string(1, '\0'), { "/opt/v/Tesk/PelkVarnhal.exe" } },
        { "/opt/client", { "/opt/client" } },
        { spaced_text, { spaced } },
        { spaced_text + " /start \"in tray\"", { spaced, "/start", "in tray" } },
        { "\"" + spaced_text + "\" -x", { spaced, "-x" } },
        { "\"/opt/never closed", { "/opt/never closed" } },
        { "/opt/not there yet", { "/opt/not there yet" } },
        { "/opt/100%f", { "/opt/100%f" } },
        { "/opt/$HOME`id`\"quoted\"", { "/opt/$HOME`id`\"quoted\"" } },
        { "", { "" } },
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.data);
        EXPECT_EQ(OpenedKey(kRunKey).set("Merav Conferencing", each.data), ERROR_SUCCESS);
        if (each.data.empty())
            continue;
        const ReadEntry entry = read_entry(home.autostart / "Merav Conferencing.desktop");
        EXPECT_EQ(entry.name, "Merav Conferencing");
        EXPECT_EQ(entry.try_exec, each.command[0]);
        EXPECT_EQ(entry.command, each.command);
    }
}

TEST(Autostart, FollowsTheValue)
{
    const RegistryHome home;
    const auto entries = [&] { return std::distance(std::filesystem::directory_iterator(home.autostart), {}); };
    const OpenedKey key(kRunKey);
    EXPECT_EQ(key.set("\xB0\xB2\xD7\xB0", "/opt/client"), ERROR_SUCCESS);
    EXPECT_EQ(read_entry(home.autostart / "%B0%B2%D7%B0.desktop").name, "\u5B89\u88C5");
    EXPECT_EQ(key.set("Client", "/opt/client"), ERROR_SUCCESS);
    EXPECT_EQ(key.set("CLIENT", "/opt/other"), ERROR_SUCCESS) << "the same value";
    EXPECT_EQ(read_entry(home.autostart / "Client.desktop").try_exec, "/opt/other");
    EXPECT_EQ(entries(), 2);
    EXPECT_EQ(key.set("client", "bytes", REG_BINARY), ERROR_SUCCESS);
    EXPECT_EQ(entries(), 1) << "bytes are no command";
    EXPECT_EQ(RegDeleteValueA(key.handle, "\xB0\xB2\xD7\xB0"), ERROR_SUCCESS);
    EXPECT_EQ(entries(), 0);
    EXPECT_EQ(key.set("Client", "/opt/client"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, kRunKey), ERROR_SUCCESS);
    EXPECT_EQ(entries(), 0);
    ASSERT_EQ(create_key("Software\\Other\\Run"), ERROR_SUCCESS);
    EXPECT_EQ(OpenedKey("Software\\Other\\Run").set("x", "/opt/client"), ERROR_SUCCESS);
    EXPECT_EQ(entries(), 0);
}

TEST(Autostart, FailsTogetherWithTheValue)
{
    const RegistryHome home;
    const OpenedKey key(kRunKey);
    ASSERT_EQ(key.set("Client", "/opt/old"), ERROR_SUCCESS);
    const auto damaged = std::make_shared<DamagedFileSystem>();
    damaged->fail_at = 0;
    damaged->stays_broken = true;
    {
        const FileSystemInPlace in_place(damaged);
        EXPECT_EQ(key.set("Client", "/opt/new"), ERROR_DISK_FULL);
        EXPECT_EQ(key.set("Other", "/opt/new"), ERROR_DISK_FULL);
    }
    EXPECT_EQ(key.get("Client"), "/opt/old");
    EXPECT_EQ(key.get("Other"), "missing");
    EXPECT_EQ(read_entry(home.autostart / "Client.desktop").try_exec, "/opt/old");
    EXPECT_FALSE(std::filesystem::exists(home.autostart / "Other.desktop"));
}

TEST(Autostart, GivesEveryNameAFileOfItsOwn)
{
    const std::string names[] = { "a", "a.desktop", "../a", "..", ".", "",   "/",    "a/b", "a\\b",
                                  "%", "%25",       "%2F",  "\n", " ", "a ", "\xFF", "A",   ".a" };
    std::set<std::string> files;
    for (const std::string& name : names) {
        const std::string file = win32::autostart_file_name(name);
        EXPECT_EQ(file.find('/'), std::string::npos) << file;
        EXPECT_NE(file[0], '.') << file;
        EXPECT_TRUE(files.insert(file).second) << file;
    }
}

} // namespace
} // namespace test
