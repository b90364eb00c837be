// Command targets: objects whose message map says which of their members handle which message or command.
//
//     class MainWnd : public CFrameWnd {
//     protected:
//         void OnTimer(UINT_PTR nIDEvent);
//         void OnInstall();
//         DECLARE_MESSAGE_MAP()
//     };
//     BEGIN_MESSAGE_MAP(MainWnd, CFrameWnd)
//     ON_WM_TIMER()
//     ON_COMMAND(10001, &MainWnd::OnInstall)
//     END_MESSAGE_MAP()
//
// A map's entries are asked in their order, then those of the base class's map; the first that fits handles the
// message. The macros for single messages are in message_macros.h.
#pragma once

#include "../afx/object.h"

#include <windows.h>

#define afx_msg

class CCmdTarget;
class CCmdUI;
class CMenu;
class CWnd;

struct AFX_MSGMAP_ENTRY {
    // Calls the handler on a target of the map's class.
    using MessageThunk = LRESULT (*)(CCmdTarget* target, WPARAM wParam, LPARAM lParam);
    using CommandThunk = BOOL (*)(CCmdTarget* target, UINT nID, void* pExtra); // FALSE: not handled after all

    UINT nMessage = 0; // WM_COMMAND for commands; 0 ends the map
    UINT nCode = 0;    // the notification, CN_COMMAND or CN_UPDATE_COMMAND_UI
    UINT nID = 0;      // the first and last command
    UINT nLastID = 0;
    MessageThunk pfnMessage = nullptr;
    CommandThunk pfnCommand = nullptr;
};

struct AFX_MSGMAP {
    const AFX_MSGMAP* (*pfnGetBaseMap)(); // null: the root
    const AFX_MSGMAP_ENTRY* lpEntries;

    // The first entry for the message in this map or those of the bases; null if there is none.
    const AFX_MSGMAP_ENTRY* find(UINT nMessage, UINT nCode = 0, UINT nID = 0) const;
};

// Who would handle a command: asked for by passing one to OnCmdMsg, which then does not call the handler.
struct AFX_CMDHANDLERINFO {
    CCmdTarget* pTarget;
};

inline constexpr int CN_COMMAND = 0;
inline constexpr int CN_UPDATE_COMMAND_UI = -1;

class CCmdTarget : public CObject {
    DECLARE_DYNAMIC(CCmdTarget)

    // Routes a command (nCode CN_COMMAND), a control's notification or a question for a command's state (pExtra is a
    // CCmdUI*) to a handler. TRUE: there was one. The handler may have destroyed the target.
    virtual BOOL OnCmdMsg(UINT nID, int nCode, void* pExtra, AFX_CMDHANDLERINFO* pHandlerInfo);

protected:
    CCmdTarget() = default;

    static const AFX_MSGMAP* GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;
};

// A command whose state is asked for. This class shows the state on a menu's item or on a control, whichever stands for
// the command; classes derived from it show it as they like.
class CCmdUI {
public:
    CCmdUI() = default;
    CCmdUI(const CCmdUI&) = default;
    CCmdUI& operator=(const CCmdUI&) = default;

    // In the order of their slots. One that is overridden sets m_bEnableChanged in Enable, as this one does.
    virtual void Enable(BOOL bOn = TRUE);
    virtual void SetCheck(int nCheck = 1);  // 0 off, 1 on, 2 undecided, on a menu like 1; nothing for controls
    virtual void SetRadio(BOOL bOn = TRUE); // as SetCheck
    virtual void SetText(LPCSTR lpszText);
    virtual ~CCmdUI() = default;

    // Asks the target for the state. When it has no answer and bDisableIfNoHndler is TRUE, the command is enabled
    // exactly if the target would handle it. TRUE: the target answered. A handler may destroy a target that is a
    // window, and this object with it.
    BOOL DoUpdate(CCmdTarget* pTarget, BOOL bDisableIfNoHndler);
    // Called by a handler that has nothing to say: the next one is asked.
    void ContinueRouting() { m_bContinueRouting = TRUE; }

    UINT m_nID = 0;
    UINT m_nIndex = 0;             // of the item in the menu, of m_nIndexMax
    CMenu* m_pMenu = nullptr;      // borrowed, like the two below
    CMenu* m_pSubMenu = nullptr;   // the item is this one, and m_nID its first command; its state is not changed
    CWnd* m_pOther = nullptr;      // the control
    BOOL m_bEnableChanged = FALSE; // Enable was called
    BOOL m_bContinueRouting = FALSE;
    UINT m_nIndexMax = 0;
};

#define DECLARE_MESSAGE_MAP()                                                                                          \
protected:                                                                                                             \
    static const AFX_MSGMAP* GetThisMessageMap();                                                                      \
    const AFX_MSGMAP* GetMessageMap() const override;

#define BEGIN_MESSAGE_MAP(theClass, baseClass)                                                                         \
    const AFX_MSGMAP* theClass::GetMessageMap() const                                                                  \
    {                                                                                                                  \
        return GetThisMessageMap();                                                                                    \
    }                                                                                                                  \
    const AFX_MSGMAP* theClass::GetThisMessageMap()                                                                    \
    {                                                                                                                  \
        using ThisClass [[maybe_unused]] = theClass;                                                                   \
        using BaseClass = baseClass;                                                                                   \
        static constexpr AFX_MSGMAP_ENTRY entries[] = {

#define END_MESSAGE_MAP()                                                                                              \
    AFX_MSGMAP_ENTRY {}                                                                                                \
    }                                                                                                                  \
    ;                                                                                                                  \
    static constexpr AFX_MSGMAP map = { &BaseClass::GetThisMessageMap, entries };                                      \
    return &map;                                                                                                       \
    }

// LRESULT handler(WPARAM, LPARAM)
#define ON_MESSAGE(message, memberFxn) AFX_MESSAGE_RESULT(message, (self->*(memberFxn))(wParam, lParam))
// void handler()
#define ON_MESSAGE_VOID(message, memberFxn) AFX_MESSAGE_VOID(message, (self->*(memberFxn))())

// An entry whose handler's answer is the message's result. `self`, `wParam` and `lParam` are at hand for the call.
#define AFX_MESSAGE_RESULT(message, call)                                                                              \
    AFX_MSGMAP_ENTRY{ .nMessage = (message),                                                                           \
                      .pfnMessage = [](CCmdTarget* target, [[maybe_unused]] WPARAM wParam,                             \
                                       [[maybe_unused]] LPARAM lParam) -> LRESULT {                                    \
                          auto* const self = static_cast<ThisClass*>(target);                                          \
                          return static_cast<LRESULT>(call);                                                           \
                      } },
// An entry whose handler answers nothing: the result is 0.
#define AFX_MESSAGE_VOID(message, call) AFX_MESSAGE_RESULT(message, (call, 0))

// An entry for the commands id to idLast whose handler is called by `call`, with `self`, `nID` and `pExtra` at hand.
#define AFX_COMMAND_ENTRY(code, id, idLast, call)                                                                      \
    AFX_MSGMAP_ENTRY{ .nMessage = WM_COMMAND,                                                                          \
                      .nCode = static_cast<UINT>(code),                                                                \
                      .nID = static_cast<UINT>(id),                                                                    \
                      .nLastID = static_cast<UINT>(idLast),                                                            \
                      .pfnCommand = [](CCmdTarget* target, [[maybe_unused]] UINT nID,                                  \
                                       [[maybe_unused]] void* pExtra) -> BOOL {                                        \
                          auto* const self = static_cast<ThisClass*>(target);                                          \
                          call;                                                                                        \
                      } },

// void handler()
#define ON_COMMAND(id, memberFxn) AFX_COMMAND_ENTRY(CN_COMMAND, id, id, (self->*(memberFxn))(); return TRUE)
// BOOL handler(UINT nID); FALSE: not handled
#define ON_COMMAND_EX(id, memberFxn) AFX_COMMAND_ENTRY(CN_COMMAND, id, id, return (self->*(memberFxn))(nID))
// void handler(UINT nID)
#define ON_COMMAND_RANGE(id, idLast, memberFxn)                                                                        \
    AFX_COMMAND_ENTRY(CN_COMMAND, id, idLast, (self->*(memberFxn))(nID); return TRUE)
// void handler(), for a control's notification
#define ON_CONTROL(wNotifyCode, id, memberFxn)                                                                         \
    AFX_COMMAND_ENTRY(wNotifyCode, id, id, (self->*(memberFxn))(); return TRUE)
// void handler(CCmdUI* pCmdUI)
#define ON_UPDATE_COMMAND_UI(id, memberFxn) ON_UPDATE_COMMAND_UI_RANGE(id, id, memberFxn)
#define ON_UPDATE_COMMAND_UI_RANGE(id, idLast, memberFxn)                                                              \
    AFX_COMMAND_ENTRY(CN_UPDATE_COMMAND_UI, id, idLast, (self->*(memberFxn))(static_cast<CCmdUI*>(pExtra)); return TRUE)
