#include "afxcmn/image_list.h"

#include <utility>

IMPLEMENT_DYNCREATE(CImageList, CObject)

BOOL CImageList::Attach(HIMAGELIST hImageList)
{
    if (!hImageList)
        return FALSE;
    DeleteImageList();
    m_hImageList = hImageList;
    return TRUE;
}

HIMAGELIST CImageList::Detach()
{
    return std::exchange(m_hImageList, nullptr);
}

BOOL CImageList::DeleteImageList()
{
    return m_hImageList ? ::ImageList_Destroy(Detach()) : FALSE;
}
