// Unpacks a cabinet as the installer does, without its window: unpack CABINET FOLDER [MILLISECONDS to pause per entry]
#include "setupapi.h"
#include "winbase.h"

#include <cstdlib>
#include <string>

namespace {

std::string target_folder;
DWORD pause_ms = 0;

UINT CALLBACK copy_all(PVOID, UINT notification, UINT_PTR param1, UINT_PTR)
{
    if (notification != SPFILENOTIFY_FILEINCABINET)
        return reinterpret_cast<const FILEPATHS_A*>(param1)->Win32Error;
    auto& info = *reinterpret_cast<FILE_IN_CABINET_INFO_A*>(param1);
    const std::string name = info.NameInCabinet;
    for (std::size_t i = 0; (i = name.find('\\', i)) != std::string::npos; i++)
        CreateDirectoryA((target_folder + "\\" + name.substr(0, i)).c_str(), nullptr);
    lstrcpyA(info.FullTargetName, (target_folder + "\\" + name).c_str());
    if (pause_ms)
        Sleep(pause_ms);
    return FILEOP_DOCOPY;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3)
        return 2;
    if (argc > 3)
        pause_ms = static_cast<DWORD>(std::atoi(argv[3]));
    target_folder = argv[2];
    return SetupIterateCabinetA(argv[1], 0, copy_all, nullptr) ? 0 : 1;
}
