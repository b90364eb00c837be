#include <windows.h>

#include <gtest/gtest.h>

namespace {

TEST(User32, OffersTheMonitorsAtRunTime)
{
    const HMODULE user32 = LoadLibraryA("User32.dll");
    const auto from_window =
        reinterpret_cast<decltype(&MonitorFromWindow)>(GetProcAddress(user32, "MonitorFromWindow"));
    const auto from_rect = reinterpret_cast<decltype(&MonitorFromRect)>(GetProcAddress(user32, "MonitorFromRect"));
    const auto get_info = reinterpret_cast<decltype(&GetMonitorInfoA)>(GetProcAddress(user32, "GetMonitorInfoA"));
    ASSERT_TRUE(from_window && from_rect && get_info);

    MONITORINFO info{};
    info.cbSize = sizeof info;
    ASSERT_TRUE(get_info(from_window(nullptr, MONITOR_DEFAULTTOPRIMARY), &info));
    EXPECT_EQ(info.dwFlags & MONITORINFOF_PRIMARY, MONITORINFOF_PRIMARY);
    EXPECT_EQ(from_rect(&info.rcMonitor, MONITOR_DEFAULTTOPRIMARY), from_window(nullptr, MONITOR_DEFAULTTOPRIMARY));
    EXPECT_EQ(GetProcAddress(user32, "SetLayeredWindowAttributes"), nullptr) << "windows of ours have no layers";
}

} // namespace
