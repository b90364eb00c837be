// Pictures of windows without a display: the process's screen is one in memory from here on.
#pragma once

#include "tools/skinview/ViewWnd.h"

#include <cstdint>
#include <memory>

namespace win32 {
class MemoryScreen;
}

namespace skinview {

struct Picture {
    int cx = 0;
    int cy = 0;
    std::vector<std::uint32_t> pixels; // 0x00RRGGBB, row by row from the top
};

// Writes a PNG file. False: it cannot be written, and no part of it stays.
[[nodiscard]] bool Save(const Picture& picture, const std::string& strPath);

class Studio {
public:
    // Made before the first window. The screen has the size, and all of it to work in.
    explicit Studio(CSize size);
    ~Studio();
    Studio(const Studio&) = delete;
    Studio& operator=(const Studio&) = delete;

    // The window as it stands on the screen, once everything that waits is drawn. What its outline leaves out is
    // chequered in white and grey.
    Picture Photograph(const ViewWnd& wnd);

private:
    std::shared_ptr<win32::MemoryScreen> m_pScreen;
};

} // namespace skinview
