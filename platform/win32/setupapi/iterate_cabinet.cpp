#include "platform/win32/kernel/file_replacement.h"
#include "platform/win32/kernel/file_system.h"
#include "platform/win32/kernel/last_error.h"
#include "platform/win32/kernel/native_path.h"
#include "platform/win32/setupapi/cabinet.h"
#include "platform/win32/setupapi/entry_name.h"
#include "platform/win32/setupapi/file_publisher.h"
#include "platform/win32/setupapi/read_ahead.h"
#include "setupapi.h"
#include "winbase.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <set>
#include <string>
#include <utility>

namespace win32 {

namespace {

constexpr WORD kMayBeExecuted = 0x40;

// An entry's record with room behind it: callbacks copy folder and name into FullTargetName without counting.
struct Announcement {
    FILE_IN_CABINET_INFO_A info;
    CHAR room[8192];
};

mode_t mode_for(const CabinetEntry& entry)
{
    return (entry.attributes & kMayBeExecuted) ? 0777 : 0666;
}

// The moment an entry's date means here, in the local time that cabinets are written in; false for a date that is none.
bool time_of(const CabinetEntry& entry, struct timespec& time)
{
    struct tm parts {};
    parts.tm_year = (entry.dos_date >> 9) + 80;
    parts.tm_mon = ((entry.dos_date >> 5) & 15) - 1;
    parts.tm_mday = entry.dos_date & 31;
    parts.tm_hour = entry.dos_time >> 11;
    parts.tm_min = (entry.dos_time >> 5) & 63;
    parts.tm_sec = (entry.dos_time & 31) * 2;
    parts.tm_isdst = -1;
    if (parts.tm_mon < 0 || parts.tm_mon > 11 || parts.tm_mday == 0 || parts.tm_hour > 23 || parts.tm_min > 59)
        return false;
    time = { ::mktime(&parts), 0 };
    return true;
}

// Writes an entry to a new file, up to the first failure and never more than was declared.
class FileSink : public EntrySink {
public:
    FileSink(FileReplacement& file, DWORD size) : file_(file), left_(size) {}

    bool take(std::span<const std::byte> bytes) override
    {
        if (result_ == 0 && bytes.size() <= left_) {
            left_ -= bytes.size();
            result_ = file_.write(bytes);
        }
        return true;
    }

    int result() const { return result_; }

private:
    FileReplacement& file_;
    std::size_t left_;
    int result_ = 0;
};

// A name with one kind of separator.
std::string components_of(std::string name)
{
    std::replace(name.begin(), name.end(), '\\', '/');
    return name;
}

class Walk {
public:
    Walk(LPCSTR source, PSP_FILE_CALLBACK_A callback, PVOID context)
        : source_(source), callback_(callback), context_(context)
    {}

    // Announces, copies and reports every entry; NO_ERROR, or the walk's last error.
    DWORD run(Cabinet& cabinet)
    {
        ReadAhead ahead(cabinet);
        DWORD error = NO_ERROR;
        bool refused = false;
        for (std::size_t i = 0; i < cabinet.entries().size() && error == NO_ERROR; i++) {
            const CabinetEntry& entry = cabinet.entries()[i];
            if (is_inside_name(entry.name))
                error = visit(entry, [&](EntrySink& sink) { return ahead.read(i, sink); });
            else
                refused = true;
        }
        if (const int late = publisher_.finish(); late != 0 && error == NO_ERROR)
            error = error_from_errno(late);
        for (const std::string& folder : folders_)
            (void)flush_folder(folder); // one that was removed meanwhile has nothing left to flush
        return error == NO_ERROR && refused ? ERROR_INVALID_NAME : error;
    }

private:
    // One entry, whose bytes `read` gives to a sink; an error ends the walk.
    template <class Read>
    DWORD visit(const CabinetEntry& entry, Read read)
    {
        // The caller makes the entry's folders when it is announced: a file that stands in the way must be there by
        // then, or the outcome would hang on the disk's speed.
        if (leads_through_a_file(entry.name))
            publisher_.settle();
        announcement_.info = { entry.name, entry.size, NO_ERROR, entry.dos_date, entry.dos_time, entry.attributes, {} };
        switch (notify(SPFILENOTIFY_FILEINCABINET, &announcement_.info)) {
        case FILEOP_DOCOPY:
            break;
        case FILEOP_SKIP:
            return NO_ERROR;
        default:
            return ERROR_CANCELLED;
        }
        FILEPATHS_A paths = { announcement_.info.FullTargetName, source_, NO_ERROR, 0 };
        std::string target;
        paths.Win32Error = native_path(announcement_.info.FullTargetName, target);
        if (paths.Win32Error == NO_ERROR)
            paths.Win32Error = copy(entry, target, read);
        return notify(SPFILENOTIFY_FILEEXTRACTED, &paths);
    }

    UINT notify(UINT notification, void* param)
    {
        return callback_(context_, notification, reinterpret_cast<UINT_PTR>(param), 0);
    }

    template <class Read>
    DWORD copy(const CabinetEntry& entry, const std::string& target, Read read)
    {
        enter_folders(entry, target);
        FileReplacement file;
        if (const int begun = file.begin(target, mode_for(entry)); begun != 0)
            return error_for_path(begun, target);
        FileSink sink(file, entry.size);
        const DWORD error = read(sink);
        if (sink.result() != 0)
            return error_from_errno(sink.result());
        if (error != NO_ERROR)
            return error;
        if (struct timespec modified; time_of(entry, modified))
            (void)file.set_time(modified); // a file system without such times still takes the file
        publisher_.publish(std::move(file));
        published_.insert(components_of(entry.name));
        return NO_ERROR;
    }

    // Whether a folder of this name is a file that an earlier entry was.
    bool leads_through_a_file(const char* name) const
    {
        const std::string components = components_of(name);
        for (std::size_t end = components.find('/'); end != std::string::npos; end = components.find('/', end + 1)) {
            if (published_.contains(components.substr(0, end)))
                return true;
        }
        return false;
    }

    // Remembers the target's folder, and those above it that the name speaks of, to be flushed at the end: a new folder
    // has its own name in the one above.
    void enter_folders(const CabinetEntry& entry, const std::string& target)
    {
        std::string folder = folder_of(target);
        if (folders_.insert(folder).second)
            remove_abandoned_replacements(folder);
        for (const char* c = entry.name; (c = std::strpbrk(c, "\\/")) != nullptr; c++) {
            folder = folder_of(folder);
            folders_.insert(folder);
        }
    }

    const LPCSTR source_;
    const PSP_FILE_CALLBACK_A callback_;
    const PVOID context_;
    Announcement announcement_{};
    std::set<std::string> folders_;
    std::set<std::string> published_; // names of entries that were copied
    FilePublisher publisher_;
};

} // namespace

} // namespace win32

BOOL WINAPI SetupIterateCabinetA(LPCSTR cabinet, DWORD, PSP_FILE_CALLBACK_A callback, PVOID context)
{
    if (!cabinet || !callback)
        return win32::fail(FALSE, ERROR_INVALID_PARAMETER);
    std::string path;
    if (const DWORD error = win32::native_path(cabinet, path); error != NO_ERROR)
        return win32::fail(FALSE, error);
    win32::Cabinet opened;
    if (const DWORD error = opened.open(path); error != NO_ERROR)
        return win32::fail(FALSE, error);
    if (const DWORD error = win32::Walk(cabinet, callback, context).run(opened); error != NO_ERROR)
        return win32::fail(FALSE, error);
    return TRUE;
}
