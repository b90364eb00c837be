#include "skin/WindowSkinPtr.h"

#include <mutex>

namespace PelkGUI {

namespace {

constinit std::mutex theMutex; // a window's object may end on another thread than its window
constinit WindowSkinPtr* theFirst = nullptr;

} // namespace

WindowSkinPtr::WindowSkinPtr(GuiSkinWindow* pSkin) : m_pSkin(pSkin)
{
    const std::scoped_lock lock(theMutex);
    m_pNext = theFirst;
    if (theFirst)
        theFirst->m_pPrevious = this;
    theFirst = this;
}

WindowSkinPtr::~WindowSkinPtr()
{
    const std::scoped_lock lock(theMutex);
    (m_pPrevious ? m_pPrevious->m_pNext : theFirst) = m_pNext;
    if (m_pNext)
        m_pNext->m_pPrevious = m_pPrevious;
}

void WindowSkinPtr::Forget(const GuiSkinWindow* pGone)
{
    const std::scoped_lock lock(theMutex);
    for (WindowSkinPtr* p = theFirst; p; p = p->m_pNext) {
        if (*p == pGone)
            *p = nullptr;
    }
}

} // namespace PelkGUI
