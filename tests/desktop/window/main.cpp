// A window as plain as they come: the frame is the default one, the client area has one colour and a tool tip, and a
// corner is cut off. The tests of the desktop drive it.
#include <commctrl.h>
#include <windows.h>

namespace {

constexpr COLORREF kClientColour = RGB(64, 160, 96);
constexpr int kCut = 40; // pixels, at the lower left

void CutCorner(HWND window)
{
    RECT rect{};
    GetWindowRect(window, &rect);
    const int width = rect.right - rect.left;
    const int height = rect.bottom - rect.top;
    const HRGN outline = CreateRectRgn(0, 0, width, height);
    const HRGN corner = CreateRectRgn(0, height - kCut, kCut, height);
    CombineRgn(outline, outline, corner, RGN_DIFF);
    DeleteObject(corner);
    SetWindowRgn(window, outline, TRUE); // owns the outline from now on
}

LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    switch (message) {
    case WM_SIZE:
        if (wparam != SIZE_MINIMIZED)
            CutCorner(window);
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcA(window, message, wparam, lparam);
    }
}

void SetIcon(HWND window)
{
    constexpr int kSide = 16;
    const HBITMAP colour = CreateBitmap(kSide, kSide, 1, 32, nullptr);
    const HBITMAP mask = CreateBitmap(kSide, kSide, 1, 1, nullptr);
    const ICONINFO info{ TRUE, 0, 0, mask, colour };
    const HICON icon = CreateIconIndirect(&info);
    DeleteObject(colour);
    DeleteObject(mask);
    SendMessageA(window, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(icon));
}

HWND CreateTip(HWND window)
{
    InitCommonControls();
    const HWND tip =
        CreateWindowExA(0, TOOLTIPS_CLASSA, nullptr, WS_POPUP, 0, 0, 0, 0, window, nullptr, nullptr, nullptr);
    char text[] = "A tool tip\nof two lines";
    TOOLINFOA tool{ sizeof(TOOLINFOA), TTF_IDISHWND, window, reinterpret_cast<UINT_PTR>(window), {}, nullptr, text, 0 };
    SendMessageA(tip, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
    return tip;
}

} // namespace

int main()
{
    const HBRUSH background = CreateSolidBrush(kClientColour);
    WNDCLASSA window_class{};
    window_class.lpfnWndProc = WindowProcedure;
    window_class.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    window_class.hbrBackground = background;
    window_class.lpszClassName = "Plain";
    RegisterClassA(&window_class);
    const HWND window = CreateWindowExA(0, "Plain", "A plain window", WS_OVERLAPPEDWINDOW, 200, 150, 400, 300, nullptr,
                                        nullptr, nullptr, nullptr);
    if (!window)
        return 1;
    SetIcon(window);
    const HWND tip = CreateTip(window);
    ShowWindow(window, SW_SHOW);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0) {
        SendMessageA(tip, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&message));
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return static_cast<int>(message.wParam);
}
