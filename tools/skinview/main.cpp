// skinview: shows a skin to its author. Options.cpp says what it can do and what its exit codes mean.
#include "tools/skinview/FileWatch.h"
#include "tools/skinview/View.h"
#include "version/Version.h"

#include <atomic>
#include <iostream>

#include "look/GuiManager.h"

namespace {

using namespace skinview;

// Shows the window and keeps it in step with the skin's files until it is closed.
class ViewApp : public CWinApp {
public:
    void Take(const Options& options) { m_options = options; }
    int ExitCode() const { return m_nExitCode; }

    BOOL InitInstance() override
    {
        PelkGUI::GetGuiManager().InitManager();
        m_pSkin = std::make_unique<SkinFile>(m_options.skin, m_options.resources);
        m_pWatch = std::make_unique<FileWatch>([this] {
            m_bChanged = true;
            if (const HWND hWnd = m_hWnd)
                ::PostMessageA(hWnd, ViewWnd::kReload, 0, 0);
        });
        Reload();
        std::string strWindow = WindowToShow(*m_pSkin, m_options);
        if (strWindow.empty()) { // its author may be about to make one
            std::cout << "there is no window skin to show yet" << std::endl;
            strWindow = m_options.strWindow.empty() ? "skin" : m_options.strWindow;
        }
        auto pWnd = std::make_unique<ViewWnd>(ViewWnd::Callbacks{
            [this] { Reload(); }, [](const std::string& strLine) { std::cout << strLine << std::endl; } });
        if (!pWnd->Make(strWindow, CSize(m_options.cx, m_options.cy)))
            return FALSE;
        ViewWnd* const pShown = pWnd.release(); // deletes itself
        m_pMainWnd = pShown;
        m_hWnd = pShown->m_hWnd;
        if (m_bChanged) // before there was a window to tell
            pShown->PostMessage(ViewWnd::kReload);
        pShown->ShowIcon(IconFile(*m_pSkin, strWindow));
        (void)TakeLooks(*pShown, m_options);
        pShown->ShowWindow(m_options.bMaximised ? SW_MAXIMIZE : SW_SHOW);
        pShown->UpdateWindow();
        m_nExitCode = kDone;
        return TRUE;
    }

    int ExitInstance() override
    {
        m_pWatch.reset();
        return CWinApp::ExitInstance();
    }

private:
    void Reload()
    {
        m_pWatch->Watch(m_pSkin->Files()); // a change while it is read counts
        m_pSkin->Load();
        m_pWatch->Watch(m_pSkin->Files()); // it may name others than before
        WriteReport(*m_pSkin, std::cout);
    }

    Options m_options;
    int m_nExitCode = kNoSkin; // there was no window
    // Set by one thread, asked by the other, in this order.
    std::atomic<bool> m_bChanged = false;
    std::atomic<HWND> m_hWnd = nullptr;
    std::unique_ptr<SkinFile> m_pSkin;
    std::unique_ptr<FileWatch> m_pWatch;
};

ViewApp theApp;

int Show(const Options& options)
{
    std::error_code error;
    if (!std::filesystem::is_regular_file(options.skin, error)) {
        std::cerr << "skinview: " << options.skin.string() << ": there is no such file\n";
        return kNoSkin;
    }
    theApp.Take(options);
    const int nQuitCode = AfxWinMain(AfxGetInstanceHandle(), nullptr, nullptr, SW_SHOWNORMAL);
    return theApp.ExitCode() == kDone ? nQuitCode : theApp.ExitCode(); // of a shown window: how its loop ended
}

int Run(const std::vector<std::string>& arguments)
{
    std::string strFault;
    const std::optional<Options> options = ReadOptions(arguments, &strFault);
    if (!options) {
        std::cerr << "skinview: " << strFault << "\nskinview --help says more\n";
        return kUsage;
    }
    switch (options->task) {
    case Task::Help:
        std::cout << kHelp;
        return kDone;
    case Task::Version:
        std::cout << "skinview " << kProgramVersion << '\n';
        return kDone;
    case Task::Check:
        return CheckOnly(*options, std::cout);
    case Task::Shot:
        return WriteShot(*options, std::cout);
    case Task::Sheet:
        return WriteSheet(*options, std::cout);
    case Task::Show:
        break;
    }
    return Show(*options);
}

} // namespace

int main(int argc, char** argv)
{
    const int nExitCode = Run({ argv + 1, argv + argc });
    std::cout.flush();
    ::ExitProcess(static_cast<UINT>(nExitCode)); // here and now, as every program of ours ends
}
