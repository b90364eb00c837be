#include "tests/client/ClientRun.h"

#include "platform/win32/screen/png_writer.h"

#include <chrono>
#include <cstdlib>

#include <gtest/gtest.h>

namespace test {

namespace {

class TestApp : public CWinApp {
public:
    BOOL InitInstance() override
    {
        EXPECT_TRUE(m_pNext->CreateAndShow(m_size, SW_SHOWNORMAL));
        m_pMainWnd = m_pNext.release();
        m_end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        return TRUE;
    }

    BOOL OnIdle(LONG nCount) override
    {
        const BOOL bMore = CWinApp::OnIdle(nCount);
        if (bMore || !m_pMainWnd)
            return bMore;
        if (m_nStep < m_steps.size() && m_steps[m_nStep]()) {
            m_nStep++;
        } else if (std::chrono::steady_clock::now() > m_end) {
            ADD_FAILURE() << "step " << m_nStep << " waited in vain";
            m_pMainWnd->DestroyWindow();
        }
        return TRUE; // the next look, without waiting for a message
    }

    std::unique_ptr<client::SkinnedWnd> m_pNext;
    CSize m_size;
    std::vector<ClientRun::Step> m_steps;
    std::size_t m_nStep = 0;
    std::chrono::steady_clock::time_point m_end;
};

TestApp theApp;

} // namespace

ClientRun::ClientRun()
    : m_pScreen(std::make_shared<win32::MemoryScreen>(
          std::vector<win32::Monitor>{ { { 0, 0, 1024, 768 }, { 0, 0, 1024, 768 }, true } }))
{
    win32::set_screen(m_pScreen);
    client::LoadSkin();
}

ClientRun::~ClientRun()
{
    win32::set_screen(nullptr);
}

void ClientRun::Run(std::unique_ptr<client::SkinnedWnd> pWindow, CSize size, std::vector<Step> steps)
{
    m_pWindow = pWindow.get();
    theApp.m_pNext = std::move(pWindow);
    theApp.m_size = size;
    theApp.m_nStep = 0;
    theApp.m_steps = std::move(steps);
    AfxWinMain(AfxGetInstanceHandle(), nullptr, nullptr, SW_SHOWNORMAL);
    EXPECT_EQ(theApp.m_nStep, theApp.m_steps.size()) << "the window closed too early";
}

bool ClientRun::Click(client::Command nCommand)
{
    const PelkGUI::GuiCmdButton* const pButton = m_pWindow->GetCmdButton(nCommand);
    if (!pButton || !pButton->m_bVisible || !pButton->m_bEnabled || pButton->m_rcButton.IsRectEmpty())
        return false;
    CPoint point = pButton->m_rcButton.CenterPoint();
    m_pWindow->ClientToScreen(&point);
    m_pScreen->click(point);
    return true;
}

bool ClientRun::Press(UINT nKey)
{
    m_pScreen->press_key(nKey);
    m_pScreen->release_key(nKey);
    return true;
}

bool ClientRun::Close()
{
    CRect rc;
    m_pWindow->GetWindowRect(&rc);
    m_pScreen->request_close(m_pScreen->surface_at(rc.CenterPoint())); // a tip may lie over the window elsewhere
    return true;
}

std::uint32_t ClientRun::PixelAt(int x, int y) const
{
    return m_pScreen->pixel_at(OnScreen({ x, y })) & 0xFFFFFF;
}

POINT ClientRun::OnScreen(CPoint point) const
{
    CRect rc;
    m_pWindow->GetWindowRect(&rc);
    return rc.TopLeft() + point;
}

bool ClientRun::Photograph(const char* pszName)
{
    const char* const pszFolder = std::getenv("PICTURES");
    if (!pszFolder)
        return true;
    CRect rc;
    m_pWindow->GetWindowRect(&rc);
    win32::MemoryScreen::Picture screen = m_pScreen->picture();
    EXPECT_TRUE(win32::save_png(std::string(pszFolder) + "/" + pszName + ".png",
                                { screen.pixels.data() + rc.top * screen.width + rc.left, static_cast<int>(rc.Width()),
                                  static_cast<int>(rc.Height()), screen.width }));
    return true;
}

} // namespace test
