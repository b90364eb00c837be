// Searching, replacing and splitting text, safe from any thread; and mirroring pictures, for the user-interface thread.
// Used by the skin readers and by programs of their own.
#pragma once

#include <afxtempl.h>
#include <afxwin.h>

#include "look/PelkGuiApi.h"

// The first place in the text where the pattern stands, ignoring the case of ASCII letters (bytes from 0x80 up compare
// as they are); null if it stands nowhere, and for an empty pattern. Null texts count as empty.
PELKGUI_API const char* _tcsistr(const char* pszText, const char* pszPattern);

// The same for the first nCount characters of the pattern. Null for 0 and for more than the pattern has.
PELKGUI_API const char* _tcsnistr(const char* pszText, const char* pszPattern, unsigned int nCount);

// Replaces every occurrence in place, case-sensitively. Each search begins again at the front, so the replacement and
// its neighbours may make new occurrences. A replacement that contains what is searched, or an empty search, never
// ends: do not pass such.
PELKGUI_API void Replace(CString& strText, const char* pszFind, const char* pszWith);

// Appends to `pieces` what stands between the separators ("|" for an empty one), untrimmed. Empty pieces are dropped,
// save one at the very front with bKeepLeadingEmpty. With bSkipBlank pieces of white space are dropped as well; the
// last piece, behind the last separator, is dropped when it is blank in any case.
PELKGUI_API void Split(CString strText, const char* pszSeparator, CArray<CString, CString&>& pieces,
                       int bKeepLeadingEmpty, int bSkipBlank);

// A copy mirrored from left to right, in the screen's format; the caller deletes it. The bitmap is not changed. Null:
// it is none, it is selected into a context, or there is no memory. GuiManager must have been initialised: without its
// SetLayout the copy comes out unmirrored.
PELKGUI_API HBITMAP CreateMirroredBitmap(HBITMAP hBitmap);

// The same for an icon or cursor, image, mask and alpha; the hot spot stays where it was. The caller destroys it. Null:
// it is none, has no colours, or there is no memory.
PELKGUI_API HICON CreateMirroredIcon(HICON hIcon);
