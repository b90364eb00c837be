// gdi: device contexts, bitmaps, drawing, regions.
//
// Contexts and compatible bitmaps are 32-bit (0x00RRGGBB in memory, COLORREF 0x00BBGGRR in calls), masks are 1-bit. All
// units are pixels. A context, and the bitmap selected into it, belong to one thread at a time; different contexts may
// be used on different threads. Every call takes any number: what lies outside a picture is not drawn.
#pragma once

#include "windef.h"

// Colours.
constexpr COLORREF RGB(unsigned red, unsigned green, unsigned blue)
{
    return (red & 0xFF) | ((green & 0xFF) << 8) | ((blue & 0xFF) << 16);
}
constexpr BYTE GetRValue(COLORREF colour)
{
    return static_cast<BYTE>(colour);
}
constexpr BYTE GetGValue(COLORREF colour)
{
    return static_cast<BYTE>(colour >> 8);
}
constexpr BYTE GetBValue(COLORREF colour)
{
    return static_cast<BYTE>(colour >> 16);
}
inline constexpr COLORREF CLR_INVALID = 0xFFFFFFFF;

// Objects.
inline constexpr DWORD OBJ_PEN = 1;
inline constexpr DWORD OBJ_BRUSH = 2;
inline constexpr DWORD OBJ_DC = 3;
inline constexpr DWORD OBJ_FONT = 6;
inline constexpr DWORD OBJ_BITMAP = 7;
inline constexpr DWORD OBJ_REGION = 8;
inline constexpr DWORD OBJ_MEMDC = 10;

inline constexpr int WHITE_BRUSH = 0;
inline constexpr int LTGRAY_BRUSH = 1;
inline constexpr int GRAY_BRUSH = 2;
inline constexpr int DKGRAY_BRUSH = 3;
inline constexpr int BLACK_BRUSH = 4;
inline constexpr int NULL_BRUSH = 5;
inline constexpr int HOLLOW_BRUSH = NULL_BRUSH;
inline constexpr int WHITE_PEN = 6;
inline constexpr int BLACK_PEN = 7;
inline constexpr int NULL_PEN = 8;
inline constexpr int SYSTEM_FONT = 13;
inline constexpr int DEFAULT_GUI_FONT = 17;

inline constexpr int PS_SOLID = 0;
inline constexpr int PS_NULL = 5;
inline constexpr UINT BS_SOLID = 0;
inline constexpr UINT BS_NULL = 1;
inline constexpr UINT BS_PATTERN = 3;

struct BITMAP {
    LONG bmType; // 0
    LONG bmWidth;
    LONG bmHeight;
    LONG bmWidthBytes; // of a row, a multiple of 2
    WORD bmPlanes;     // 1
    WORD bmBitsPixel;  // 1 or 32
    LPVOID bmBits;     // of a DIB section; null otherwise
};

struct LOGPEN {
    UINT lopnStyle;
    POINT lopnWidth; // x counts
    COLORREF lopnColor;
};

struct LOGBRUSH {
    UINT lbStyle;
    COLORREF lbColor;
    ULONG_PTR lbHatch;
};

// The stock object of that number; it need not be deleted, and deleting it does nothing and succeeds. Null: no such
// number.
HGDIOBJ GetStockObject(int index);
// FALSE: no such object, or it is selected into a context (which keeps it).
BOOL DeleteObject(HGDIOBJ object);
// The OBJ_ number, 0 for what is no object.
DWORD GetObjectType(HGDIOBJ object);
// Copies the object's description (BITMAP, DIBSECTION, LOGPEN, LOGBRUSH, LOGFONTA), at most `size` bytes; the number of
// bytes written, or 0. Without a buffer, the number that would be written.
int GetObjectA(HGDIOBJ object, int size, LPVOID buffer);

// Solid, one pixel wide (a width of 0 or 1), or PS_NULL. Null for other styles and widths.
HPEN CreatePen(int style, int width, COLORREF colour);
HBRUSH CreateSolidBrush(COLORREF colour);
// A brush that repeats a copy of the bitmap from the context's origin on.
HBRUSH CreatePatternBrush(HBITMAP bitmap);

// Bitmaps. New pixels are black. At most 64 Mi pixels each; null for more or for a negative extent; a width or height
// of 0 gives one 1-bit pixel.
HBITMAP CreateCompatibleBitmap(HDC dc, int width, int height);
// 1 or 32 bits a pixel, one plane; null for others. `bits` (top row first, rows of a multiple of 2 bytes, a set bit is
// white) may be null.
HBITMAP CreateBitmap(int width, int height, UINT planes, UINT bits_per_pixel, LPCVOID bits);

// Contexts. A new memory context holds a bitmap of one 1-bit pixel and has the layout of the other context.
HDC CreateCompatibleDC(HDC dc);
// Memory contexts only: others go back to whoever gave them.
BOOL DeleteDC(HDC dc);
// Selects a pen, brush, font or bitmap and returns the one before, or a region as SelectClipRgn does and returns the
// kind of region. Null (for a region ERROR): nothing changed. A bitmap goes into one memory context at a time.
HGDIOBJ SelectObject(HDC dc, HGDIOBJ object);
// The selected object of that OBJ_ number.
HGDIOBJ GetCurrentObject(HDC dc, UINT type);
int SaveDC(HDC dc);
// A positive `level` is what SaveDC returned, a negative one counts back from the newest.
BOOL RestoreDC(HDC dc, int level);
BOOL GdiFlush();

inline constexpr int HORZRES = 8;
inline constexpr int VERTRES = 10;
inline constexpr int BITSPIXEL = 12;
inline constexpr int PLANES = 14;
inline constexpr int LOGPIXELSX = 88;
inline constexpr int LOGPIXELSY = 90;
int GetDeviceCaps(HDC dc, int index);

// Attributes.
inline constexpr int TRANSPARENT = 1;
inline constexpr int OPAQUE = 2;
inline constexpr int R2_BLACK = 1;
inline constexpr int R2_NOTMERGEPEN = 2;
inline constexpr int R2_MASKNOTPEN = 3;
inline constexpr int R2_NOTCOPYPEN = 4;
inline constexpr int R2_MASKPENNOT = 5;
inline constexpr int R2_NOT = 6;
inline constexpr int R2_XORPEN = 7;
inline constexpr int R2_NOTMASKPEN = 8;
inline constexpr int R2_MASKPEN = 9;
inline constexpr int R2_NOTXORPEN = 10;
inline constexpr int R2_NOP = 11;
inline constexpr int R2_MERGENOTPEN = 12;
inline constexpr int R2_COPYPEN = 13;
inline constexpr int R2_MERGEPENNOT = 14;
inline constexpr int R2_MERGEPEN = 15;
inline constexpr int R2_WHITE = 16;
inline constexpr int BLACKONWHITE = 1;
inline constexpr int COLORONCOLOR = 3;
inline constexpr DWORD LAYOUT_RTL = 1;
inline constexpr DWORD LAYOUT_BITMAPORIENTATIONPRESERVED = 8;
inline constexpr DWORD GDI_ERROR = 0xFFFFFFFF;

// Setters return the value before; 0 (of the colours CLR_INVALID, of the layout GDI_ERROR): nothing changed.
int SetBkMode(HDC dc, int mode);
int GetBkMode(HDC dc);
int SetROP2(HDC dc, int mode);
int GetROP2(HDC dc);
COLORREF SetTextColor(HDC dc, COLORREF colour);
COLORREF GetTextColor(HDC dc);
COLORREF SetBkColor(HDC dc, COLORREF colour);
COLORREF GetBkColor(HDC dc);
// Stretched colours are never mixed: both modes pick whole source pixels.
int SetStretchBltMode(HDC dc, int mode);
int GetStretchBltMode(HDC dc);
// LAYOUT_RTL mirrors the context's x axis; with LAYOUT_BITMAPORIENTATIONPRESERVED pictures copied from or to it keep
// their orientation.
DWORD SetLayout(HDC dc, DWORD layout);
DWORD GetLayout(HDC dc);

// One logical unit is one pixel; the point `window` of what is drawn lands on the point `viewport` of the context.
BOOL SetWindowOrgEx(HDC dc, int x, int y, LPPOINT previous);
BOOL GetWindowOrgEx(HDC dc, LPPOINT origin);
BOOL SetViewportOrgEx(HDC dc, int x, int y, LPPOINT previous);
BOOL GetViewportOrgEx(HDC dc, LPPOINT origin);
BOOL OffsetViewportOrgEx(HDC dc, int x, int y, LPPOINT previous);
BOOL DPtoLP(HDC dc, LPPOINT points, int count);
BOOL LPtoDP(HDC dc, LPPOINT points, int count);

// Regions. Coordinates beyond 2^27 are taken as that.
inline constexpr int ERROR = 0;
inline constexpr int NULLREGION = 1;
inline constexpr int SIMPLEREGION = 2;
inline constexpr int COMPLEXREGION = 3;
inline constexpr int RGN_AND = 1;
inline constexpr int RGN_OR = 2;
inline constexpr int RGN_XOR = 3;
inline constexpr int RGN_DIFF = 4;
inline constexpr int RGN_COPY = 5;
inline constexpr DWORD RDH_RECTANGLES = 1;

struct RGNDATAHEADER {
    DWORD dwSize;
    DWORD iType; // RDH_RECTANGLES
    DWORD nCount;
    DWORD nRgnSize; // bytes of the rectangles
    RECT rcBound;
};
struct RGNDATA {
    RGNDATAHEADER rdh;
    char Buffer[1]; // nCount RECTs
};

HRGN CreateRectRgn(int left, int top, int right, int bottom);
HRGN CreateRectRgnIndirect(const RECT* rect);
HRGN CreateEllipticRgn(int left, int top, int right, int bottom);
HRGN CreateEllipticRgnIndirect(const RECT* rect);
// `width` and `height` of the ellipse whose quarters are the corners.
HRGN CreateRoundRectRgn(int left, int top, int right, int bottom, int width, int height);
BOOL SetRectRgn(HRGN region, int left, int top, int right, int bottom);
// `destination` is an existing region and may be one of the sources; RGN_COPY uses the first only.
int CombineRgn(HRGN destination, HRGN first, HRGN second, int mode);
int OffsetRgn(HRGN region, int x, int y);
BOOL EqualRgn(HRGN first, HRGN second);
BOOL PtInRegion(HRGN region, int x, int y);
BOOL RectInRegion(HRGN region, const RECT* rect);
int GetRgnBox(HRGN region, LPRECT box);
// The region as rectangles, row by row; the bytes needed (without a buffer) or written, or 0.
DWORD GetRegionData(HRGN region, DWORD size, RGNDATA* data);

// Clipping. Regions are in device coordinates and copied; rectangles are in logical ones.
int SelectClipRgn(HDC dc, HRGN region); // null: no clipping
int ExtSelectClipRgn(HDC dc, HRGN region, int mode);
int IntersectClipRect(HDC dc, int left, int top, int right, int bottom);
int ExcludeClipRect(HDC dc, int left, int top, int right, int bottom);
int OffsetClipRgn(HDC dc, int x, int y);
int GetClipBox(HDC dc, LPRECT box);
// 1: `region` received the clipping region; 0: there is none; -1: failure.
int GetClipRgn(HDC dc, HRGN region);
BOOL PtVisible(HDC dc, int x, int y);
BOOL RectVisible(HDC dc, const RECT* rect);

// Copies.
inline constexpr DWORD SRCCOPY = 0x00CC0020;
inline constexpr DWORD SRCPAINT = 0x00EE0086;
inline constexpr DWORD SRCAND = 0x008800C6;
inline constexpr DWORD SRCINVERT = 0x00660046;
inline constexpr DWORD SRCERASE = 0x00440328;
inline constexpr DWORD NOTSRCCOPY = 0x00330008;
inline constexpr DWORD NOTSRCERASE = 0x001100A6;
inline constexpr DWORD MERGECOPY = 0x00C000CA;
inline constexpr DWORD MERGEPAINT = 0x00BB0226;
inline constexpr DWORD PATCOPY = 0x00F00021;
inline constexpr DWORD PATPAINT = 0x00FB0A09;
inline constexpr DWORD PATINVERT = 0x005A0049;
inline constexpr DWORD DSTINVERT = 0x00550009;
inline constexpr DWORD BLACKNESS = 0x00000042;
inline constexpr DWORD WHITENESS = 0x00FF0062;

// Any of the 256 operations between source, destination and brush. A negative extent mirrors and runs from its start
// leftward or upward, the start included. Pixels whose source lies outside the source context stay as they are. Between
// 1-bit and 32-bit: a clear bit takes the destination's text colour, a set one its background colour; a pixel of the
// source's background colour sets the bit.
BOOL BitBlt(HDC dc, int x, int y, int width, int height, HDC source, int source_x, int source_y, DWORD operation);
// Column i of the destination shows the source's column (2i+1)*source_width/(2*width), rows likewise.
BOOL StretchBlt(HDC dc, int x, int y, int width, int height, HDC source, int source_x, int source_y, int source_width,
                int source_height, DWORD operation);
BOOL PatBlt(HDC dc, int x, int y, int width, int height, DWORD operation);

// Shapes: border with the pen, inside with the brush, both by the mix mode.
BOOL Rectangle(HDC dc, int left, int top, int right, int bottom);
int FillRect(HDC dc, const RECT* rect, HBRUSH brush);
int FrameRect(HDC dc, const RECT* rect, HBRUSH brush);
BOOL InvertRect(HDC dc, const RECT* rect);
BOOL FillRgn(HDC dc, HRGN region, HBRUSH brush);
COLORREF SetPixel(HDC dc, int x, int y, COLORREF colour);
// CLR_INVALID outside the clipping region.
COLORREF GetPixel(HDC dc, int x, int y);
BOOL MoveToEx(HDC dc, int x, int y, LPPOINT previous);
// The last point is not drawn.
BOOL LineTo(HDC dc, int x, int y);

// Device-independent bitmaps: rows of 1, 4, 8, 16, 24 or 32 bits, bottom row first unless the height is negative.
inline constexpr DWORD BI_RGB = 0;
inline constexpr DWORD BI_RLE8 = 1;
inline constexpr DWORD BI_RLE4 = 2;
inline constexpr DWORD BI_BITFIELDS = 3;
inline constexpr UINT DIB_RGB_COLORS = 0;

struct RGBQUAD {
    BYTE rgbBlue;
    BYTE rgbGreen;
    BYTE rgbRed;
    BYTE rgbReserved;
};
struct BITMAPCOREHEADER {
    DWORD bcSize; // 12
    WORD bcWidth;
    WORD bcHeight;
    WORD bcPlanes;
    WORD bcBitCount;
};
struct BITMAPINFOHEADER {
    DWORD biSize; // 40
    LONG biWidth;
    LONG biHeight;
    WORD biPlanes;
    WORD biBitCount;
    DWORD biCompression;
    DWORD biSizeImage;
    LONG biXPelsPerMeter;
    LONG biYPelsPerMeter;
    DWORD biClrUsed;
    DWORD biClrImportant;
};
struct BITMAPINFO {
    BITMAPINFOHEADER bmiHeader;
    RGBQUAD bmiColors[1];
};
struct DIBSECTION {
    BITMAP dsBm;
    BITMAPINFOHEADER dsBmih;
    DWORD dsBitfields[3];
    HANDLE dshSection;
    DWORD dsOffset;
};
#pragma pack(push, 2)
struct BITMAPFILEHEADER {
    WORD bfType; // "BM"
    DWORD bfSize;
    WORD bfReserved1;
    WORD bfReserved2;
    DWORD bfOffBits; // of the pixels, from the file's beginning
};
#pragma pack(pop)

// The program's bitmap resource, or (LoadImageA with LR_LOADFROMFILE) a bitmap file, as a 32-bit bitmap. Every depth,
// run-lengths, bit fields and every documented header; pixels that the data does not reach are black. Null: the data is
// no bitmap, or a small file claims a large one (more than 64 MB and 64 times its size).
inline constexpr UINT IMAGE_BITMAP = 0;
inline constexpr UINT LR_DEFAULTCOLOR = 0;
inline constexpr UINT LR_LOADFROMFILE = 0x10;
HBITMAP LoadBitmapA(HINSTANCE instance, LPCSTR name);
// Width and height 0: the picture's own; others stretch it.
HANDLE LoadImageA(HINSTANCE instance, LPCSTR name, UINT type, int width, int height, UINT flags);

// Reads rows of a bitmap as BI_RGB rows of 1 (black and white), 24 or 32 bits; `start` counts from the DIB's first row
// in memory. Without `bits` and with a biBitCount of 0 it describes the bitmap instead. Returns the rows copied
// (without bits: 1), or 0. The bitmap may be selected into a context.
int GetDIBits(HDC dc, HBITMAP bitmap, UINT start, UINT lines, LPVOID bits, BITMAPINFO* info, UINT usage);
// Sets rows of a bitmap from any form of DIB; the rows set, or 0.
int SetDIBits(HDC dc, HBITMAP bitmap, UINT start, UINT lines, LPCVOID bits, const BITMAPINFO* info, UINT usage);
// A 32-bit BI_RGB bitmap whose pixels the caller may reach at *bits as long as it lives. Null for other depths, and for
// a file mapping in `section`.
HBITMAP CreateDIBSection(HDC dc, const BITMAPINFO* info, UINT usage, LPVOID* bits, HANDLE section, DWORD offset);

// Icons. A 32-bit image whose pixels have any alpha is laid over by it, else by the mask: a set bit of the mask keeps
// what is below. Images of icon files and resources in PNG form are passed over.
inline constexpr UINT IMAGE_ICON = 1;
inline constexpr UINT LR_DEFAULTSIZE = 0x40;
inline constexpr UINT DI_MASK = 1;
inline constexpr UINT DI_IMAGE = 2;
inline constexpr UINT DI_NORMAL = 3;
inline constexpr UINT DI_DEFAULTSIZE = 8;

struct ICONINFO {
    BOOL fIcon;
    DWORD xHotspot;
    DWORD yHotspot;
    HBITMAP hbmMask; // of an icon without colours: twice as high, the image below the mask
    HBITMAP hbmColor;
};

// The program's icon resource nearest to 32 x 32. It is shared: always the same handle, which need not be destroyed.
HICON LoadIconA(HINSTANCE instance, LPCSTR name);
// Copies both bitmaps.
HICON CreateIconIndirect(const ICONINFO* info);
// Gives out copies of both bitmaps, which the caller deletes.
BOOL GetIconInfo(HICON icon, ICONINFO* info);
HICON CopyIcon(HICON icon);
BOOL DestroyIcon(HICON icon);
// DI_IMAGE copies the image as it is, alpha included; DI_MASK the mask as black and white; DI_NORMAL lays the icon over
// what is there (over `brush`, if one is given). Width or height 0: the icon's own, or 32 with DI_DEFAULTSIZE. `frame`
// counts the pictures of an animation; icons have only the first.
BOOL DrawIconEx(HDC dc, int x, int y, HICON icon, int width, int height, UINT frame, HBRUSH brush, UINT flags);

// Fonts. A positive height is the cell's (ascent and descent), a negative one the em's, 0 is 16; beyond 1000 it is
// taken as 1000. Width, escapement and orientation have no effect: glyphs have their natural width and run along the x
// axis. The face is a name in the process's code page, of at most 31 bytes; a missing face falls back and never fails.
// The font itself is looked for when text is first measured or drawn with it.
inline constexpr int LF_FACESIZE = 32;
inline constexpr int FW_NORMAL = 400;
inline constexpr int FW_BOLD = 700;
inline constexpr DWORD ANSI_CHARSET = 0;
inline constexpr DWORD DEFAULT_CHARSET = 1;
inline constexpr DWORD OUT_DEFAULT_PRECIS = 0;
inline constexpr DWORD CLIP_DEFAULT_PRECIS = 0;
inline constexpr DWORD DEFAULT_QUALITY = 0;
inline constexpr DWORD DEFAULT_PITCH = 0;
inline constexpr DWORD FF_DONTCARE = 0;
inline constexpr DWORD FR_PRIVATE = 0x10;

struct LOGFONTA {
    LONG lfHeight;
    LONG lfWidth;
    LONG lfEscapement;
    LONG lfOrientation;
    LONG lfWeight;
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;
    BYTE lfPitchAndFamily;
    CHAR lfFaceName[LF_FACESIZE];
};

HFONT CreateFontIndirectA(const LOGFONTA* description);
HFONT CreateFontA(int height, int width, int escapement, int orientation, int weight, DWORD italic, DWORD underline,
                  DWORD strike_out, DWORD char_set, DWORD output_precision, DWORD clip_precision, DWORD quality,
                  DWORD pitch_and_family, LPCSTR face);

// Makes the faces of a font file known to this program; the number of faces, or 0. Files are counted: each addition
// asks for a removal.
int AddFontResourceA(LPCSTR path);
int AddFontResourceExA(LPCSTR path, DWORD flags, PVOID reserved);
// Looks at no more than MAX_PATH units for the path's end.
int AddFontResourceExW(LPCWSTR path, DWORD flags, PVOID reserved);
BOOL RemoveFontResourceA(LPCSTR path);
// The same for a font in memory, which is copied; *faces receives the number of faces. Null: it is no font.
HANDLE AddFontMemResourceEx(PVOID bytes, DWORD size, PVOID reserved, DWORD* faces);

// Text: bytes of the process's code page, at most 8192 a call; control characters are drawn as spaces. Glyphs are
// grey-scale and advance by whole pixels, so that what is measured is what is drawn.
struct TEXTMETRICA {
    LONG tmHeight;
    LONG tmAscent;
    LONG tmDescent;
    LONG tmInternalLeading;
    LONG tmExternalLeading; // 0
    LONG tmAveCharWidth;    // of an "x"
    LONG tmMaxCharWidth;    // an em, the width of a Chinese character
    LONG tmWeight;
    LONG tmOverhang;
    LONG tmDigitizedAspectX; // 96
    LONG tmDigitizedAspectY;
    BYTE tmFirstChar;
    BYTE tmLastChar;
    BYTE tmDefaultChar;
    BYTE tmBreakChar;
    BYTE tmItalic;
    BYTE tmUnderlined;
    BYTE tmStruckOut;
    BYTE tmPitchAndFamily;
    BYTE tmCharSet;
};

inline constexpr UINT TA_NOUPDATECP = 0;
inline constexpr UINT TA_UPDATECP = 1;
inline constexpr UINT TA_LEFT = 0;
inline constexpr UINT TA_RIGHT = 2;
inline constexpr UINT TA_CENTER = 6;
inline constexpr UINT TA_TOP = 0;
inline constexpr UINT TA_BOTTOM = 8;
inline constexpr UINT TA_BASELINE = 24;
inline constexpr UINT TA_RTLREADING = 256;
inline constexpr UINT ETO_OPAQUE = 2;
inline constexpr UINT ETO_CLIPPED = 4;

BOOL GetTextMetricsA(HDC dc, TEXTMETRICA* metrics);
BOOL GetTextExtentPoint32A(HDC dc, LPCSTR text, int length, LPSIZE size);
// The mode before, or GDI_ERROR. TA_RTLREADING reads the other way than the context's layout does.
UINT SetTextAlign(HDC dc, UINT align);
UINT GetTextAlign(HDC dc);
BOOL TextOutA(HDC dc, int x, int y, LPCSTR text, int length);
// FALSE for a spacing array: glyphs have their own advances.
BOOL ExtTextOutA(HDC dc, int x, int y, UINT options, const RECT* rect, LPCSTR text, UINT length, const INT* spacing);

inline constexpr UINT DT_TOP = 0;
inline constexpr UINT DT_LEFT = 0;
inline constexpr UINT DT_CENTER = 1;
inline constexpr UINT DT_RIGHT = 2;
inline constexpr UINT DT_VCENTER = 4;
inline constexpr UINT DT_BOTTOM = 8;
inline constexpr UINT DT_WORDBREAK = 0x10;
inline constexpr UINT DT_SINGLELINE = 0x20;
inline constexpr UINT DT_NOCLIP = 0x100;
inline constexpr UINT DT_CALCRECT = 0x400;
inline constexpr UINT DT_NOPREFIX = 0x800;
inline constexpr UINT DT_RTLREADING = 0x20000;

// Draws lines of text within the rectangle and returns their height, or 0. DT_CALCRECT draws nothing and fits the
// rectangle to the text instead. DT_NOPREFIX must be given: no character is a prefix. A length of -1 reads up to the
// terminator. 0 for flags not named here.
int DrawTextA(HDC dc, LPCSTR text, int length, LPRECT rect, UINT format);
