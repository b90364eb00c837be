// CImageList: a row of small pictures of one size. It owns its list and destroys it.
#pragma once

#include "../afx/object.h"
#include "../afxwin/device_context.h"
#include "../afxwin/gdi_object.h"

#include <commctrl.h>
#include <windows.h>

class CImageList : public CObject {
    DECLARE_DYNCREATE(CImageList)

    CImageList() = default;
    ~CImageList() override { DeleteImageList(); }

    // A list of pictures cx by cy large, in place of the one before. FALSE: the system refused, and the one before
    // stays.
    BOOL Create(int cx, int cy, UINT nFlags, int nInitial, int nGrow)
    {
        return Attach(::ImageList_Create(cx, cy, nFlags, nInitial, nGrow));
    }
    HIMAGELIST GetSafeHandle() const { return m_hImageList; }
    // TRUE: the list is this object's from now on. FALSE for a null list.
    BOOL Attach(HIMAGELIST hImageList);
    HIMAGELIST Detach(); // the caller's from now on
    BOOL DeleteImageList();

    int GetImageCount() const { return ::ImageList_GetImageCount(m_hImageList); }
    // The index of the first picture added, or -1.
    int Add(CBitmap* pbmImage, COLORREF crMask)
    {
        return ::ImageList_AddMasked(m_hImageList, static_cast<HBITMAP>(pbmImage->GetSafeHandle()), crMask);
    }
    int Add(HICON hIcon) { return Replace(-1, hIcon); }
    int Replace(int nImage, HICON hIcon) { return ::ImageList_ReplaceIcon(m_hImageList, nImage, hIcon); }
    // A new icon, which the caller destroys; null: no such picture.
    HICON ExtractIcon(int nImage) { return ::ImageList_GetIcon(m_hImageList, nImage, ILD_NORMAL); }
    BOOL Remove(int nImage) { return ::ImageList_Remove(m_hImageList, nImage); }
    BOOL Draw(CDC* pDC, int nImage, POINT pt, UINT nStyle)
    {
        return ::ImageList_Draw(m_hImageList, nImage, pDC->GetSafeHdc(), pt.x, pt.y, nStyle);
    }

    HIMAGELIST m_hImageList = nullptr;
};
