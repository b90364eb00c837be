#include "platform/win32/advapi/autostart.h"

#include "platform/win32/kernel/desktop_folders.h"
#include "platform/win32/kernel/file_replacement.h"
#include "platform/win32/kernel/file_system.h"
#include "winnls.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <vector>

#include <sys/stat.h>

namespace win32 {

namespace {

struct CommandLine {
    std::string program;
    std::vector<std::string> arguments;
};

bool is_file(const std::string& path)
{
    struct stat info {};
    return file_system().status(path, info) == 0 && S_ISREG(info.st_mode);
}

std::string native(std::string_view path)
{
    std::string native(path);
    std::replace(native.begin(), native.end(), '\\', '/');
    return native;
}

// Blanks separate, quotation marks hold together.
std::vector<std::string> split_arguments(std::string_view text)
{
    std::vector<std::string> arguments;
    bool quoted = false;
    bool inside = false;
    for (const char c : text) {
        if (!quoted && (c == ' ' || c == '\t')) {
            inside = false;
            continue;
        }
        if (!inside)
            arguments.emplace_back();
        inside = true;
        if (c == '"')
            quoted = !quoted;
        else
            arguments.back() += c;
    }
    return arguments;
}

CommandLine parse_command(std::string_view command)
{
    if (command.starts_with('"')) {
        command.remove_prefix(1);
        const std::size_t end = std::min(command.find('"'), command.size());
        return { native(command.substr(0, end)), split_arguments(command.substr(std::min(end + 1, command.size()))) };
    }
    for (std::size_t blank = command.find(' '); blank != std::string_view::npos; blank = command.find(' ', blank + 1)) {
        const std::string program = native(command.substr(0, blank));
        if (is_file(program))
            return { program, split_arguments(command.substr(blank)) };
    }
    return { native(command), {} };
}

std::string utf8_of(const std::string& text)
{
    std::u16string wide(text.size(), u'\0');
    const int units = MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                                          static_cast<int>(wide.size()));
    std::string utf8(static_cast<std::size_t>(units) * 3, '\0');
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, utf8.data(), static_cast<int>(utf8.size()),
                                          nullptr, nullptr);
    utf8.resize(static_cast<std::size_t>(bytes));
    return utf8;
}

// A value of the entry's "string" type.
std::string escaped(std::string_view text)
{
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '\\':
            escaped += "\\\\";
            break;
        case '\n':
            escaped += "\\n";
            break;
        case '\r':
            escaped += "\\r";
            break;
        case '\t':
            escaped += "\\t";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

// One word of a command: in quotation marks, field codes disarmed.
std::string quoted(std::string_view word)
{
    std::string quoted = "\"";
    for (const char c : word) {
        if (c == '"' || c == '`' || c == '$' || c == '\\')
            quoted += '\\';
        if (c == '%')
            quoted += '%';
        quoted += c;
    }
    return quoted + '"';
}

std::string entry_text(const std::string& name, const CommandLine& command)
{
    std::string exec = quoted(command.program);
    for (const std::string& argument : command.arguments)
        exec += ' ' + quoted(argument);
    // a nameless value is called by its program
    const std::string shown =
        name.empty() ? command.program.substr(command.program.find_last_of('/') + 1) : utf8_of(name);
    return "[Desktop Entry]\nType=Application\nName=" + escaped(shown) + "\nTryExec=" + escaped(command.program) +
           "\nExec=" + escaped(exec) + "\n";
}

std::optional<std::string> autostart_folder()
{
    const std::optional<std::string> config = config_folder();
    return config ? std::optional(*config + "/autostart") : std::nullopt;
}

} // namespace

std::string autostart_file_name(std::string_view name)
{
    constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789 -_.";
    constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string file;
    for (const char c : name) {
        const bool hides = c == '.' && file.empty(); // a file that begins so is not seen
        if (!hides && kPlain.find(c) != std::string_view::npos) {
            file += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        file += { '%', kHex[byte >> 4], kHex[byte & 15] };
    }
    return (file.empty() ? "%" : file) + ".desktop"; // a lone "%" is no other name's
}

int write_autostart_entry(const std::string& name, std::string_view command)
{
    const std::optional<std::string> folder = autostart_folder();
    if (!folder)
        return -ENOENT;
    if (const int made = make_folder_path(*folder); made != 0)
        return made;
    const std::string text = entry_text(name, parse_command(command.substr(0, command.find('\0'))));
    FileReplacement file;
    int result = file.begin(*folder + '/' + autostart_file_name(name), 0666);
    if (result == 0)
        result = file.write(std::as_bytes(std::span(text)));
    if (result == 0)
        result = file.commit();
    if (result == 0)
        result = flush_folder(*folder);
    return result;
}

int remove_autostart_entry(const std::string& name)
{
    const std::optional<std::string> folder = autostart_folder();
    if (!folder)
        return -ENOENT;
    const int result = file_system().remove_file(*folder + '/' + autostart_file_name(name));
    return result == -ENOENT || result == -ENOTDIR ? 0 : result;
}

} // namespace win32
