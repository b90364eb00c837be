// A window skin with the geometry of the gallery's, and the pieces that its pictures are made of.
#pragma once

#include <cstdint>
#include <vector>

#include <afxwin.h>

#include "skin/GuiSkinWindow.h"

namespace bench {

constexpr int kSheetWidth = 512;
constexpr int kSheetHeight = 512;
constexpr const char* kCaption = "Gallery of all parts";
constexpr const char* kFace = "DejaVu Sans";
constexpr int kTextHeight = 13;
constexpr COLORREF kTextColour = RGB(255, 255, 255);
constexpr COLORREF kShadowColour = RGB(0x21, 0x45, 0x4E);

// The picture that all parts are cut out of: noise.
const std::vector<std::uint32_t>& Sheet();

class GallerySkin : public PelkGUI::GuiSkinWindow {
public:
    explicit GallerySkin(bool bHasText);
};

enum class Fill { Once, Across, Down, Stretched };
struct Piece {
    CRect rcTo;
    CRect rcFrom;
    Fill fill = Fill::Once;
};
// What lies on top comes last.
std::vector<Piece> FramePieces(const CSize& size, bool bCaptionOnly);
std::vector<Piece> ClientPieces(const CSize& size);

} // namespace bench
