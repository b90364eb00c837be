// Whole frames, caption strips and inner frames, and hit tests. Each row's name is "what/who". Before the clock starts,
// every peer's picture is compared with ours.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "Peers.h"
#include "look/GuiManager.h"

namespace {

using namespace bench;

struct Scene {
    CSize size;
    bool bClient = false;
    bool bCaptionOnly = false;
    bool bHasText = false;
};

CWnd& Window(const CSize& size)
{
    static CWnd* const pWnd = [] {
        PelkGUI::GetGuiManager().InitManager();
        auto* const pNew = new CWnd; // lives as long as the program
        pNew->CreateEx(0, AfxRegisterWndClass(0), kCaption, WS_POPUP | WS_VISIBLE, 0, 0, 10, 10, nullptr, nullptr);
        return pNew;
    }();
    pWnd->SetWindowPos(nullptr, 0, 0, size.cx, size.cy, SWP_NOREDRAW);
    return *pWnd;
}

// Paints the scene into a picture of its own.
class Ours {
public:
    explicit Ours(const Scene& scene) : m_scene(scene), m_skin(scene.bHasText), m_wnd(Window(scene.size))
    {
        m_bmp.CreateBitmap(scene.size.cx, scene.size.cy, 1, 32, nullptr);
        m_dc.CreateCompatibleDC(nullptr);
        m_hOld = ::SelectObject(m_dc.GetSafeHdc(), m_bmp.GetSafeHandle());
    }
    Ours(const Ours&) = delete;
    Ours& operator=(const Ours&) = delete;
    ~Ours() { ::SelectObject(m_dc.GetSafeHdc(), m_hOld); }

    void Draw()
    {
        if (m_scene.bClient)
            m_skin.PaintClient(&m_dc, CRect(CPoint(0, 0), m_scene.size));
        else
            m_skin.Paint(&m_wnd, m_dc, m_scene.bCaptionOnly, 2);
    }
    std::vector<std::uint32_t> Pixels()
    {
        std::vector<std::uint32_t> pixels(static_cast<std::size_t>(m_scene.size.cx) *
                                          static_cast<std::size_t>(m_scene.size.cy));
        BITMAPINFO info{ { sizeof(BITMAPINFOHEADER), m_scene.size.cx, -m_scene.size.cy, 1, 32, BI_RGB, 0, 0, 0, 0, 0 },
                         {} };
        ::GetDIBits(m_dc.GetSafeHdc(), m_bmp, 0, static_cast<UINT>(m_scene.size.cy), pixels.data(), &info,
                    DIB_RGB_COLORS);
        return pixels;
    }

private:
    const Scene m_scene;
    GallerySkin m_skin;
    CWnd& m_wnd;
    CBitmap m_bmp;
    CDC m_dc;
    HGDIOBJ m_hOld;
};

std::vector<Piece> PiecesOf(const Scene& scene)
{
    return scene.bClient ? ClientPieces(scene.size) : FramePieces(scene.size, scene.bCaptionOnly);
}

bool IsSamePicture(const Scene& scene, Peer& peer)
{
    Scene plain = scene;
    plain.bHasText = false;
    Ours ours(plain);
    ours.Draw();
    peer.Take(PiecesOf(scene), false);
    peer.Draw();
    const std::vector<std::uint32_t> pixels = ours.Pixels();
    for (std::size_t i = 0; i < pixels.size(); i++) {
        if ((pixels[i] ^ peer.Pixels()[i]) & 0xFFFFFF)
            return false;
    }
    return true;
}

void PaintOurs(benchmark::State& state, const Scene& scene)
{
    Ours ours(scene);
    for (auto _ : state) {
        ours.Draw();
        benchmark::ClobberMemory();
    }
}

void PaintTheirs(benchmark::State& state, const Scene& scene, std::unique_ptr<Peer> (*make)(const CSize&))
{
    const std::unique_ptr<Peer> peer = make(scene.size);
    if (make != MakeMemcpy && !IsSamePicture(scene, *peer)) {
        state.SkipWithError("draws another picture");
        return;
    }
    peer->Take(PiecesOf(scene), scene.bHasText);
    for (auto _ : state) {
        peer->Draw();
        benchmark::ClobberMemory();
    }
}

// The whole way of a WM_NCPAINT, to a window that shows.
void PaintWindow(benchmark::State& state, const Scene& scene)
{
    GallerySkin skin(scene.bHasText);
    CWnd& wnd = Window(scene.size);
    for (auto _ : state) {
        CWindowDC dc(&wnd);
        skin.Paint(&wnd, dc, scene.bCaptionOnly, 2);
    }
}

void HitTest(benchmark::State& state, const CSize& size)
{
    GallerySkin skin(false);
    CWnd& wnd = Window(size);
    for (auto _ : state) {
        for (int y = 0; y < size.cy; y++) {
            for (int x = 0; x < size.cx; x++)
                benchmark::DoNotOptimize(skin.OnNcHitTest(&wnd, CPoint(x, y), TRUE));
        }
    }
    state.SetItemsProcessed(state.iterations() * size.cx * size.cy);
}

void Register(const char* pszName, const Scene& scene)
{
    const std::string strName = pszName;
    benchmark::RegisterBenchmark((strName + "/ours").c_str(), PaintOurs, scene);
    if (!scene.bClient)
        benchmark::RegisterBenchmark((strName + "/ours_window").c_str(), PaintWindow, scene);
    benchmark::RegisterBenchmark((strName + "/memcpy").c_str(), PaintTheirs, scene, MakeMemcpy);
    benchmark::RegisterBenchmark((strName + "/qt5").c_str(), PaintTheirs, scene, MakeQt);
    benchmark::RegisterBenchmark((strName + "/cairo").c_str(), PaintTheirs, scene, MakeCairo);
}

} // namespace

int main(int argc, char** argv)
{
    ::setenv("SCREEN", "memory", 1);
    constexpr CSize kSmall(510, 349);
    constexpr CSize kLarge(1920, 1080);
    Register("frame_510x349", { .size = kSmall });
    Register("frame_1920x1080", { .size = kLarge });
    Register("frame_with_text_510x349", { .size = kSmall, .bHasText = true });
    Register("frame_with_text_1920x1080", { .size = kLarge, .bHasText = true });
    Register("caption_with_text_510", { .size = kSmall, .bCaptionOnly = true, .bHasText = true });
    Register("caption_with_text_1920", { .size = kLarge, .bCaptionOnly = true, .bHasText = true });
    Register("caption_510", { .size = kSmall, .bCaptionOnly = true });
    Register("caption_1920", { .size = kLarge, .bCaptionOnly = true });
    Register("client_510x349", { .size = kSmall, .bClient = true });
    Register("client_1920x1080", { .size = kLarge, .bClient = true });
    benchmark::RegisterBenchmark("hit_test_510x349/ours", HitTest, kSmall);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
