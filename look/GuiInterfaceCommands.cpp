// Names and images of commands.
#include "look/GuiInterface.h"

#include <cstdio>
#include <cstring>
#include <utility>
#include <vector>

namespace PelkGUI {

namespace {

// Makes the list unless it exists. 16 bits a pixel come first: the images are few and small, and so is the system.
BOOL ConfirmList(CImageList& list, CSize size, int nInitial, int nGrow)
{
    return list.GetSafeHandle() || list.Create(size.cx, size.cy, ILC_COLOR16 | ILC_MASK, nInitial, nGrow) ||
           list.Create(size.cx, size.cy, ILC_COLOR24 | ILC_MASK, nInitial, nGrow);
}

constexpr UINT kToolBarType = 241;
constexpr std::size_t kToolBarHeader = 4; // words: version, width, height, number of items

// The commands of a tool-bar resource in their order, separators being 0; what follows the resource's end is left out.
// FALSE: there is no such resource, or one without a whole header.
BOOL ReadToolBar(UINT nResourceID, std::vector<WORD>& items)
{
    const HINSTANCE hModule = AfxGetResourceHandle();
    const HRSRC hResource = ::FindResourceA(hModule, MAKEINTRESOURCEA(nResourceID), MAKEINTRESOURCEA(kToolBarType));
    const HGLOBAL hData = hResource ? ::LoadResource(hModule, hResource) : nullptr;
    const void* const pData = hData ? ::LockResource(hData) : nullptr;
    if (!pData)
        return FALSE;
    std::vector<WORD> words(::SizeofResource(hModule, hResource) / sizeof(WORD));
    if (words.size() < kToolBarHeader)
        return FALSE;
    std::memcpy(words.data(), pData, words.size() * sizeof(WORD)); // little-endian, as we are
    const std::size_t nItems = words[kToolBarHeader - 1];
    words.erase(words.begin(), words.begin() + kToolBarHeader);
    if (words.size() > nItems)
        words.resize(nItems);
    items = std::move(words);
    return TRUE;
}

} // namespace

void GuiInterface::NameCommand(UINT nID, const char* pszName)
{
    m_mapCommandNames.SetAt(pszName ? pszName : "", nID);
}

UINT GuiInterface::NameToID(const char* pszName) const
{
    UINT nID = 0;
    if (pszName && !m_mapCommandNames.Lookup(pszName, nID))
        sscanf(pszName, "%u", &nID);
    return nID;
}

int GuiInterface::ImageForID(UINT nID) const
{
    int nImage = -1;
    m_mapCommandImages.Lookup(nID, nImage);
    return nImage;
}

int GuiInterface::ConfirmImageList()
{
    return ConfirmList(m_ilCommands, CSize(18, 18), 10, 4);
}

int GuiInterface::CreateArrImages()
{
    return ConfirmList(m_ilArrows, CSize(9, 6), 2, 2);
}

int GuiInterface::CreateListImages()
{
    return ConfirmList(m_ilLists, CSize(16, 16), 4, 4);
}

void GuiInterface::AddIcon(UINT nID, HICON hIcon)
{
    ConfirmImageList();
    m_mapCommandImages.SetAt(nID, m_ilCommands.Add(hIcon));
}

void GuiInterface::CopyIcon(UINT nFromID, UINT nToID)
{
    int nImage = -1;
    if (m_mapCommandImages.Lookup(nFromID, nImage))
        m_mapCommandImages.SetAt(nToID, nImage);
}

HICON GuiInterface::ExtractIconA(UINT nID) const
{
    const int nImage = ImageForID(nID);
    return nImage >= 0 ? ::ImageList_GetIcon(m_ilCommands.GetSafeHandle(), nImage, ILD_NORMAL) : nullptr;
}

int GuiInterface::AddImagesFromToolbar(UINT nResourceID, COLORREF crMask)
{
    ConfirmImageList();
    CBitmap bmpStrip;
    if (!bmpStrip.LoadBitmap(nResourceID))
        return FALSE;
    int nImage = m_ilCommands.Add(&bmpStrip, crMask);
    if (nImage < 0)
        return FALSE;
    std::vector<WORD> items;
    if (!ReadToolBar(nResourceID, items))
        return FALSE;
    for (const WORD nID : items) {
        if (nID != 0)
            m_mapCommandImages.SetAt(nID, nImage++);
    }
    return TRUE;
}

} // namespace PelkGUI
