#include "look/GuiManager.h"

namespace PelkGUI {

namespace {

// The function of that name, or null: no library, or it has none such.
template <class Function>
void Resolve(HMODULE hModule, LPCSTR pszName, Function& pfn)
{
    pfn = hModule ? reinterpret_cast<Function>(::GetProcAddress(hModule, pszName)) : nullptr;
}

// Made before main, and earlier for a static object that asks earlier.
[[maybe_unused]] const GuiManager& theManager = GetGuiManager();

} // namespace

int GuiManager::InitManager()
{
    m_hGdi32 = ::LoadLibraryA("gdi32.dll");
    Resolve(m_hGdi32, "SetLayout", m_pfnSetLayout);
    m_hUser32 = ::LoadLibraryA("User32.dll");
    Resolve(m_hUser32, "SetLayeredWindowAttributes", m_pfnSetLayeredWindowAttributes);
    Resolve(m_hUser32, "GetMonitorInfoA", m_pfnGetMonitorInfo);
    Resolve(m_hUser32, "MonitorFromRect", m_pfnMonitorFromRect);
    Resolve(m_hUser32, "MonitorFromWindow", m_pfnMonitorFromWindow);
    return 1;
}

int GuiManager::ExitManager()
{
    if (m_hUser32)
        ::FreeLibrary(m_hUser32);
    if (m_hGdi32)
        ::FreeLibrary(m_hGdi32);
    return 1;
}

GuiManager& GetGuiManager()
{
    static GuiManager manager;
    return manager;
}

} // namespace PelkGUI
