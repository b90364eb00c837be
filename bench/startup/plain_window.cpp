// The page in a bare window of our own floor, without framework and skin, after writing a file as large as the payload:
// what remains of an installer's start when it does nothing else. plain_window SHEET.bmp FILE
#include "picture.h"

#include <windows.h>

namespace {

constexpr DWORD kPayloadBytes = 6'700'000;
constexpr DWORD kChunkBytes = 256 * 1024;

HBITMAP sheet;

void WritePayload(const char* path)
{
    const std::vector<char> chunk(kChunkBytes, 'p');
    HANDLE file = CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    for (DWORD left = kPayloadBytes; left > 0;) {
        DWORD written = 0;
        if (!WriteFile(file, chunk.data(), std::min(left, kChunkBytes), &written, nullptr) || written == 0)
            std::_Exit(2);
        left -= written;
    }
    CloseHandle(file);
}

LRESULT CALLBACK PageProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != WM_PAINT)
        return DefWindowProcA(window, message, wParam, lParam);
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(window, &paint);
    HDC source = CreateCompatibleDC(dc);
    HGDIOBJ before = SelectObject(source, sheet);
    BitBlt(dc, 0, 0, kPageWidth, kPageHeight, source, 0, 0, SRCCOPY);
    SelectObject(source, before);
    DeleteDC(source);
    EndPaint(window, &paint);
    return 0;
}

} // namespace

int main(int, char** argv)
{
    WritePayload(argv[2]);
    sheet = static_cast<HBITMAP>(LoadImageA(nullptr, argv[1], IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE));
    WNDCLASSA page{};
    page.lpfnWndProc = PageProc;
    page.lpszClassName = "Page";
    RegisterClassA(&page);
    HWND window = CreateWindowExA(0, "Page", "page", WS_POPUP, kPageLeft, kPageTop, kPageWidth, kPageHeight, nullptr,
                                  nullptr, nullptr, nullptr);
    ShowWindow(window, SW_SHOW);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0)
        DispatchMessageA(&message);
}
