#include "tools/skinview/View.h"

#include "tools/skinview/Sheet.h"

#include <algorithm>
#include <ostream>

#include "look/GuiManager.h"
#include "skin/GuiSkin.h"
#include "skin/GuiSkinWindow.h"

namespace skinview {

void WriteReport(const SkinFile& skin, std::ostream& out)
{
    const SkinReport& report = skin.Report();
    for (const Finding& finding : report.findings)
        out << TextOf(finding, skin.Path().string()) << '\n';
    out << skin.Path().string() << ": " << report.Count(Weight::Fails) << " errors, " << report.Count(Weight::Skipped)
        << " skipped, " << report.Count(Weight::Noted) << " notes" << std::endl;
}

std::string WindowToShow(const SkinFile& skin, const Options& options)
{
    const std::vector<std::string>& windows = skin.Report().windows;
    if (options.strWindow.empty())
        return windows.empty() ? "" : windows.front();
    return std::find(windows.begin(), windows.end(), options.strWindow) == windows.end() ? "" : options.strWindow;
}

std::string IconFile(const SkinFile& skin, const std::string& strWindow)
{
    return (skin.Path().parent_path() / (strWindow + ".ico")).string();
}

bool TakeLooks(ViewWnd& wnd, const Options& options)
{
    wnd.ShowRightToLeft(options.rightToLeft.value_or(PelkGUI::GetGuiManager().m_bRightToLeft));
    wnd.ShowInactive(options.bInactive);
    wnd.ShowDisabled(options.bDisabled);
    wnd.ShowChecked(options.bChecked);
    return wnd.ShowHover(options.strHover, options.bPressed);
}

int CheckOnly(const Options& options, std::ostream& out)
{
    SkinFile skin(options.skin, options.resources);
    skin.Load();
    WriteReport(skin, out);
    if (skin.Report().windows.empty() || skin.Report().Count(Weight::Fails) > 0)
        return kNoSkin;
    return skin.Report().Count(Weight::Skipped) > 0 ? kSomeSkipped : kDone;
}

namespace {

// A window on a screen in memory, for as long as this lives.
class Sitting {
public:
    Sitting(const Options& options, std::ostream& out)
        : m_options(options), m_out(out), m_studio(ScreenFor(options)), m_skin(options.skin, options.resources)
    {
        PelkGUI::GetGuiManager().InitManager();
        m_skin.Load();
        WriteReport(m_skin, out);
        m_strWindow = WindowToShow(m_skin, options);
    }
    ~Sitting()
    {
        if (m_pWnd)
            m_pWnd->DestroyWindow();
        PelkGUI::GetGuiManager().ExitManager();
    }
    Sitting(const Sitting&) = delete;
    Sitting& operator=(const Sitting&) = delete;

    // Null: there is no window skin to show, and the stream says so.
    ViewWnd* Window()
    {
        auto pWnd = std::make_unique<ViewWnd>(ViewWnd::Callbacks{});
        if (m_strWindow.empty() || !pWnd->Make(m_strWindow, CSize(m_options.cx, m_options.cy))) {
            m_out << "there is no window skin to show" << std::endl;
            return nullptr;
        }
        m_pWnd = pWnd.release(); // deletes itself
        m_pWnd->ShowIcon(IconFile(m_skin, m_strWindow));
        m_pWnd->ShowWindow(SW_SHOW);
        if (m_options.bMaximised)
            m_pWnd->ShowWindow(SW_MAXIMIZE);
        return m_pWnd;
    }

    Picture Photograph() { return m_studio.Photograph(*m_pWnd); }

    int Write(const Picture& picture)
    {
        if (!picture.pixels.empty() && Save(picture, m_options.strPicture))
            return kDone;
        m_out << m_options.strPicture
              << (picture.pixels.empty() ? ": would be too large a picture" : ": cannot be written") << std::endl;
        return kNotWritten;
    }

private:
    static CSize ScreenFor(const Options& options)
    {
        constexpr int kRoom = 64; // around the window, and for the pointer
        return options.bMaximised ? CSize(options.cx, options.cy) : CSize(options.cx + kRoom, options.cy + kRoom);
    }

    const Options& m_options;
    std::ostream& m_out;
    Studio m_studio;
    SkinFile m_skin;
    std::string m_strWindow;
    ViewWnd* m_pWnd = nullptr; // owned by its window
};

} // namespace

int WriteShot(const Options& options, std::ostream& out)
{
    Sitting sitting(options, out);
    ViewWnd* const pWnd = sitting.Window();
    if (!pWnd)
        return kNoSkin;
    if (!TakeLooks(*pWnd, options)) {
        out << "there is no button " << options.strHover << std::endl;
        return kUsage;
    }
    return sitting.Write(sitting.Photograph());
}

int WriteSheet(const Options& options, std::ostream& out)
{
    Sitting sitting(options, out);
    ViewWnd* const pWnd = sitting.Window();
    if (!pWnd)
        return kNoSkin;
    const bool bRightToLeft = PelkGUI::GetGuiManager().m_bRightToLeft;
    std::vector<SheetWindow> windows;
    for (const bool bTurned : { false, true }) {
        for (const bool bInactive : { false, true }) {
            pWnd->ShowRightToLeft(bTurned);
            pWnd->ShowInactive(bInactive);
            windows.push_back({ std::string(bInactive ? "inactive, " : "active, ") +
                                    (bTurned ? "from right to left" : "from left to right"),
                                sitting.Photograph() });
        }
    }
    pWnd->ShowRightToLeft(bRightToLeft);
    const std::string strTitle = options.skin.filename().string() + ": " + static_cast<const char*>(pWnd->m_strName);
    return sitting.Write(DrawSheet(*pWnd->m_pSkinWindow, strTitle, windows));
}

} // namespace skinview
