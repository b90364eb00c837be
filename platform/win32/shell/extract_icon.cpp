#include "shellapi.h"

namespace {

// Null: the file holds no icon.
HICON load(LPCSTR path, int size)
{
    return static_cast<HICON>(LoadImageA(nullptr, path, IMAGE_ICON, size, size, LR_LOADFROMFILE));
}

} // namespace

UINT WINAPI ExtractIconExA(LPCSTR path, int index, HICON* large, HICON* small, UINT count)
{
    if (!path || index > 0 || index < -1)
        return 0;
    if (index == -1) {
        const HICON icon = load(path, GetSystemMetrics(SM_CXICON));
        return DestroyIcon(icon) ? 1 : 0;
    }
    UINT extracted = 0;
    const auto extract = [&](HICON* icon, int size) {
        if (icon && count > 0 && (*icon = load(path, GetSystemMetrics(size))))
            extracted = 1;
    };
    extract(large, SM_CXICON);
    extract(small, SM_CXSMICON);
    return extracted;
}
