#include "tests/skinwnd/SkinnedWindow.h"

#include <sstream>

#include "look/GuiInterface.h"
#include "look/GuiManager.h"
#include "skin/GuiSkin.h"

namespace test {

namespace {

// The framework wants an application object.
CWinApp theTestApp;

std::string SystemCommandName(WPARAM nCommand)
{
    static const std::map<WPARAM, std::string> kNames = {
        { SC_CLOSE, "CLOSE" },     { SC_MINIMIZE, "MINIMISE" },     { SC_MAXIMIZE, "MAXIMISE" },
        { SC_RESTORE, "RESTORE" }, { SC_MOVE | HTCAPTION, "MOVE" }, { SC_SIZE, "SIZE" },
    };
    const auto found = kNames.find(nCommand);
    return found == kNames.end() ? std::to_string(nCommand) : found->second;
}

} // namespace

void SkinnedWnd::Happen(const char* pszWhat)
{
    if (const auto found = m_mapHappens.find(pszWhat); found != m_mapHappens.end()) {
        const std::function<void()> happens = found->second; // it may be this object's end
        happens();
    }
}

void SkinnedWnd::SkinChanging()
{
    DeleteButtons();
    for (const char* pszName : m_aButtons)
        m_listButtons.AddTail(new PelkGUI::GuiCmdButton(pszName));
    Happen("changing");
}

void SkinnedWnd::Paint(CDC* pDC, CRect rcClient)
{
    PaintButtons(pDC, rcClient);
    Happen("paint");
}

void SkinnedWnd::MouseMoveStype(UINT nState, UINT nCommand)
{
    Write("hover " + std::to_string(nState) + " " + std::to_string(nCommand));
    Happen("hover");
}

BOOL SkinnedWnd::OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo)
{
    if (nCode == CN_UPDATE_COMMAND_UI) {
        Happen("update");
        return FALSE;
    }
    if (nCode == CN_COMMAND && nID >= m_nHandledFrom && nID < 100) {
        if (!pHandlerInfo) {
            Write("command " + std::to_string(nID));
            Happen("command");
        }
        return TRUE;
    }
    return GuiMiniFrameWnd::OnCmdMsg(nID, nCode, pExtra, pHandlerInfo);
}

LRESULT SkinnedWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_SYSCOMMAND) {
        const CPoint ptPlace(lParam);
        Write(SystemCommandName(wParam) +
              (lParam ? " " + std::to_string(ptPlace.x) + "," + std::to_string(ptPlace.y) : ""));
        return 0;
    }
    if (message == WM_SIZE && lParam == 0)
        Write("laid out");
    if (message == WM_ENTERIDLE) { // an open menu has nothing to do
        Happen("menu");
        return 0;
    }
    static const std::map<UINT, const char*> kQuestions = { { WM_GETTEXTLENGTH, "text length" },
                                                            { WM_GETTEXT, "text" },
                                                            { WM_GETICON, "icon" } };
    if (const auto found = kQuestions.find(message); found != kQuestions.end()) {
        const HWND hWnd = m_hWnd;
        Happen(found->second);
        if (!::IsWindow(hWnd))
            return 0;
    }
    return GuiMiniFrameWnd::WindowProc(message, wParam, lParam);
}

SkinnedWindowTest::SkinnedWindowTest(std::vector<win32::Monitor> monitors)
    : m_pScreen(std::make_shared<win32::MemoryScreen>(std::move(monitors)))
{
    win32::set_screen(m_pScreen);
    PelkGUI::GetGuiManager().InitManager();
}

SkinnedWindowTest::~SkinnedWindowTest()
{
    if (IsOpen())
        ::DestroyWindow(m_hWnd);
    Run();
    PelkGUI::GetGuiSkin().Clear();
    PelkGUI::GetGuiInterface().Clear();
    PelkGUI::GetGuiManager().m_bRightToLeft = FALSE;
    win32::set_screen(nullptr);
}

void SkinnedWindowTest::ApplySkin(const std::string& strChildren)
{
    PelkGUI::GetGuiSkin().Clear();
    const std::string strSkin = "<?xml version=\"1.0\"?><skin><strings>"
                                "<tip id='7' message='Says. More' tip='Tip. Of'/>"
                                "<string id='8' value='First. Second'/></strings><windowSkins><windowSkin>"
                                "<target window='Main'/><image path='picture.bmp'/>" +
                                strChildren + "</windowSkin></windowSkins></skin>";
    ASSERT_TRUE(PelkGUI::GetGuiSkin().LoadFromString(strSkin.c_str(), TEST_SOURCE_DIR "/"));
}

SkinnedWnd* SkinnedWindowTest::Open(DWORD dwStyle, const CRect& rc, CWnd* pParent)
{
    m_pWnd = new SkinnedWnd;
    EXPECT_EQ(m_pWnd->Create(AfxRegisterWndClass(CS_DBLCLKS), "Main", dwStyle, rc, pParent, 0), 1);
    m_hWnd = m_pWnd->GetSafeHwnd();
    m_pWnd->ShowWindow(SW_SHOW);
    Run();
    return m_pWnd;
}

void SkinnedWindowTest::OpenSkinned(const std::string& strChildren, std::vector<const char*> aButtons)
{
    if (IsOpen())
        ::DestroyWindow(m_hWnd);
    ApplySkin(strChildren);
    Open();
    m_pWnd->m_aButtons = std::move(aButtons);
    m_pWnd->OnSkinChange();
    Run();
    m_pWnd->TakeJournal();
}

void SkinnedWindowTest::Run()
{
    MSG msg;
    while (::PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE)) {
        ::TranslateMessage(&msg);
        ::DispatchMessageA(&msg);
    }
}

void SkinnedWindowTest::MoveTo(POINT point)
{
    m_pScreen->move_pointer(point);
    Run();
}

std::string SkinnedWindowTest::Play(const std::string& strStory)
{
    std::istringstream story(strStory);
    std::string strPlayed;
    for (std::string strDeed, strState; story >> strDeed; story >> strState) {
        if (strDeed == "down")
            m_pScreen->press(win32::kLeftButton);
        else if (strDeed == "up")
            m_pScreen->release(win32::kLeftButton);
        else
            m_pScreen->move_pointer(m_mapPlaces.at(strDeed));
        Run();
        strPlayed += (strPlayed.empty() ? "" : " ") + strDeed + " " + State();
    }
    return strPlayed;
}

} // namespace test
