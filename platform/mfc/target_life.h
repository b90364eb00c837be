// Whether a command target that is a window's object still is that: no longer once a handler has destroyed it.
#pragma once

#include "afxwin/wnd.h"

namespace mfc {

class TargetLife {
public:
    explicit TargetLife(const CCmdTarget& target) : target_(&target)
    {
        if (!target.IsKindOf(RUNTIME_CLASS(CWnd)))
            return;
        const HWND window = static_cast<const CWnd&>(target).m_hWnd;
        if (CWnd::FromHandlePermanent(window) == target_)
            window_ = window;
    }

    bool is_over() const { return window_ && CWnd::FromHandlePermanent(window_) != target_; }

private:
    const CCmdTarget* target_;
    HWND window_ = nullptr; // null: not a window, or one that others own; its life is not watched
};

} // namespace mfc
