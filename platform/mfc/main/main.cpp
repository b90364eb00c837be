// The entry of a program whose application object stands in its own sources.
#include <afxwin.h>

#include <string>

int main(int argc, char** argv)
{
    std::string command_line;
    for (int i = 1; i < argc; i++)
        command_line.append(i == 1 ? "" : " ").append(argv[i]);
    // The process ends here and now, whatever its other threads are doing.
    ::ExitProcess(static_cast<UINT>(AfxWinMain(AfxGetInstanceHandle(), nullptr, command_line.data(), SW_SHOWNORMAL)));
}
