// Unpacks a cabinet as the installer does: folders made along the raw name, folder and name copied into the target
// without counting. Keeps what was said on the way.
#pragma once

#include "setupapi.h"
#include "tests/support/TestHome.h"
#include "winbase.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace test {

inline void write_file(const std::filesystem::path& path, const std::string& bytes)
{
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string read_file(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

inline std::string joined(const char* beginning, const std::string& rest)
{
    return std::string(beginning).append(rest);
}

// Every file below a folder, by its path from there.
inline std::map<std::string, std::string> files_below(const std::filesystem::path& folder)
{
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (!entry.is_directory())
            files[entry.path().lexically_relative(folder)] = read_file(entry.path());
    }
    return files;
}

struct Unpacking {
    // A place of its own: "cabinet" and the folder "target" beside it, and nothing else unless something breaks out.
    TempDir place;
    std::filesystem::path target = place.path() / "target";
    std::function<UINT(const FILE_IN_CABINET_INFO_A&)> answer = [](const auto&) { return FILEOP_DOCOPY; };
    std::vector<std::string> log; // "+name" for an entry announced, "=error" for one done with
    DWORD error = NO_ERROR;       // of the walk

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

    static UINT CALLBACK callback(PVOID context, UINT notification, UINT_PTR param1, UINT_PTR)
    {
        auto* self = static_cast<Unpacking*>(context);
        if (notification == SPFILENOTIFY_FILEINCABINET)
            return self->announce(*reinterpret_cast<FILE_IN_CABINET_INFO_A*>(param1));
        self->log.push_back(joined("=", std::to_string(reinterpret_cast<const FILEPATHS_A*>(param1)->Win32Error)));
        return NO_ERROR;
    }

    UINT announce(FILE_IN_CABINET_INFO_A& info)
    {
        const std::string name = info.NameInCabinet;
        log.push_back(joined("+", name));
        for (std::size_t i = 0; (i = name.find('\\', i)) != std::string::npos; i++)
            CreateDirectoryA((target.string() + "\\" + name.substr(0, i)).c_str(), nullptr);
        lstrcpyA(info.FullTargetName, (target.string() + "\\" + name).c_str());
        return answer(info);
    }
};

} // namespace test
