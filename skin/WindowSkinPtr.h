// WindowSkinPtr: a borrowed pointer to a window skin that becomes null when the window skin goes. Window skins go with
// their skin, which a program may replace at any time, also from within something that a window skin is just doing.
//
//     const WindowSkinPtr pSelf(this);
//     ... something that lets others run
//     if (!pSelf)
//         return; // this object is gone
//
// Made, set and followed on the user-interface thread. Other threads may ask whether there is one, and end objects that
// hold such a pointer.
#pragma once

#include <atomic>

#include "look/PelkGuiApi.h"

namespace PelkGUI {

class GuiSkinWindow;

class PELKGUI_API WindowSkinPtr {
public:
    explicit WindowSkinPtr(GuiSkinWindow* pSkin = nullptr);
    WindowSkinPtr(const WindowSkinPtr&) = delete;
    ~WindowSkinPtr();

    WindowSkinPtr& operator=(const WindowSkinPtr&) = delete;
    WindowSkinPtr& operator=(GuiSkinWindow* pSkin)
    {
        m_pSkin.store(pSkin, std::memory_order_relaxed);
        return *this;
    }
    operator GuiSkinWindow*() const { return m_pSkin.load(std::memory_order_relaxed); }
    GuiSkinWindow* operator->() const { return *this; }

    // Said by a window skin in its destructor.
    static void Forget(const GuiSkinWindow* pGone);

private:
    std::atomic<GuiSkinWindow*> m_pSkin;
    // All such pointers of the process, in a list.
    WindowSkinPtr* m_pPrevious = nullptr;
    WindowSkinPtr* m_pNext = nullptr;
};

} // namespace PelkGUI
