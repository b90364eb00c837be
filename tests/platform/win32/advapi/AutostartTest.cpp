#include "platform/win32/advapi/autostart.h"
#include "tests/platform/win32/advapi/Registry.h"
#include "tests/support/FailingFileSystem.h"

#include <set>
#include <vector>

#include <glib.h>
#include <gtest/gtest.h>

namespace test {
namespace {

using Words = std::vector<std::string>;

// What a desktop reads from an entry.
struct ReadEntry {
    std::string name;
    std::string try_exec;
    Words command;
};

std::string key_of(GKeyFile* file, const char* key)
{
    g_autofree char* value = g_key_file_get_string(file, "Desktop Entry", key, nullptr);
    return value ? value : "missing";
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

ReadEntry entry_of(const std::string& value)
{
    const std::string path = config_folder() / "autostart" / (value + ".desktop");
    EXPECT_EQ(std::system(("desktop-file-validate '" + path + "'").c_str()), 0) << read_file(path);
    g_autoptr(GKeyFile) file = g_key_file_new();
    EXPECT_TRUE(g_key_file_load_from_file(file, path.c_str(), G_KEY_FILE_NONE, nullptr)) << path;
    ReadEntry entry = { key_of(file, "Name"), key_of(file, "TryExec"), {} };
    g_auto(GStrv) words = nullptr;
    EXPECT_TRUE(g_shell_parse_argv(key_of(file, "Exec").c_str(), nullptr, &words, nullptr)) << read_file(path);
    for (char** word = words; word && *word; word++)
        entry.command.push_back(without_field_codes(*word));
    return entry;
}

TEST(Autostart, StartsWhatTheRunValueNames)
{
    const std::string spaced = home() / "a b/client", spaced_text = (home() / "a b") + "\\client";
    write_file(spaced, "");
    const struct {
        std::string data;
        Words command;
    } kCases[] = {
        { "/opt/v\\Tesk\\PelkVarnhal.exe" + std::string(1, '\0'), { "/opt/v/Tesk/PelkVarnhal.exe" } },
        { spaced_text, { spaced } },
        { spaced_text + " /start \"in tray\"", { spaced, "/start", "in tray" } },
        { "\"" + spaced_text + "\" -x", { spaced, "-x" } },
        { "\"/opt/never closed", { "/opt/never closed" } },
        { "/opt/not there yet", { "/opt/not there yet" } },
        { "/opt/100%f", { "/opt/100%f" } },
        { "/opt/$HOME`id`\"quoted\"", { "/opt/$HOME`id`\"quoted\"" } },
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.data);
        EXPECT_EQ(OpenedKey(kRunKey).set("Merav Conferencing", c.data), ERROR_SUCCESS);
        const ReadEntry entry = entry_of("Merav Conferencing");
        EXPECT_EQ(entry.name, "Merav Conferencing");
        EXPECT_EQ(entry.try_exec, c.command[0]);
        EXPECT_EQ(entry.command, c.command);
    }
    EXPECT_EQ(OpenedKey(kRunKey).set("", ""), ERROR_SUCCESS);
    EXPECT_EQ(OpenedKey(kRunKey).set("", "/opt/client"), ERROR_SUCCESS);
    EXPECT_EQ(entry_of("%").name, "client") << "a nameless value is called by its program";
}

TEST(Autostart, FollowsTheValue)
{
    const auto entries = [] {
        return std::distance(std::filesystem::directory_iterator(config_folder() / "autostart"), {});
    };
    const OpenedKey key(kRunKey);
    EXPECT_EQ(key.set("\xB0\xB2\xD7\xB0", "/opt/client"), ERROR_SUCCESS);
    EXPECT_EQ(entry_of("%B0%B2%D7%B0").name, "\u5B89\u88C5");
    EXPECT_EQ(key.set("Client", "/opt/client"), ERROR_SUCCESS);
    EXPECT_EQ(key.set("CLIENT", "/opt/other"), ERROR_SUCCESS) << "the same value";
    EXPECT_EQ(entry_of("Client").try_exec, "/opt/other");
    EXPECT_EQ(entries(), 2);
    EXPECT_EQ(key.set("client", "bytes", REG_BINARY), ERROR_SUCCESS);
    EXPECT_EQ(entries(), 1) << "bytes are no command";
    EXPECT_EQ(RegDeleteValueA(key.handle, "\xB0\xB2\xD7\xB0"), ERROR_SUCCESS);
    EXPECT_EQ(entries(), 0);
    EXPECT_EQ(key.set("Client", "/opt/client"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteKeyA(HKEY_CURRENT_USER, kRunKey), ERROR_SUCCESS);
    ASSERT_EQ(create_key("Software\\Other\\Run"), ERROR_SUCCESS);
    EXPECT_EQ(OpenedKey("Software\\Other\\Run").set("x", "/opt/client"), ERROR_SUCCESS);
    EXPECT_EQ(entries(), 0);
}

TEST(Autostart, FailsTogetherWithTheValue)
{
    const OpenedKey key(kRunKey);
    ASSERT_EQ(key.set("Client", "/opt/old"), ERROR_SUCCESS);
    {
        const WithFailingFileSystem disk;
        disk->fail_all(FileCall::write, ENOSPC);
        EXPECT_EQ(key.set("Client", "/opt/new"), ERROR_DISK_FULL);
        EXPECT_EQ(key.set("Other", "/opt/new"), ERROR_DISK_FULL);
    }
    EXPECT_EQ(key.get("Client"), "/opt/old");
    EXPECT_EQ(key.get("Other"), "missing");
    EXPECT_EQ(entry_of("Client").try_exec, "/opt/old");
    EXPECT_FALSE(std::filesystem::exists(config_folder() / "autostart/Other.desktop"));
}

TEST(Autostart, GivesEveryNameAFileOfItsOwn)
{
    std::set<std::string> files;
    for (const char* name : { "a", "a.desktop", "../a", "..", ".", "", "/", "a/b", "a\\b", "%", "%25", "%2F", "\n", " ",
                              "a ", "\xFF", "A", ".a" }) {
        const std::string file = win32::autostart_file_name(name);
        EXPECT_EQ(file.find('/'), std::string::npos) << file;
        EXPECT_NE(file[0], '.') << file;
        EXPECT_TRUE(files.insert(file).second) << file;
    }
}

} // namespace
} // namespace test
