#include "tests/platform/mfc/NotingFrame.h"

namespace test {

BEGIN_MESSAGE_MAP(NotingFrame, CFrameWnd)
ON_WM_CREATE()
ON_WM_PAINT()
ON_WM_TIMER()
ON_WM_DESTROY()
ON_WM_CLOSE()
ON_COMMAND(kCommand, &NotingFrame::OnChosen)
ON_UPDATE_COMMAND_UI_RANGE(1, 0xEFFF, &NotingFrame::OnUpdate)
ON_MESSAGE(kAsk, &NotingFrame::OnAsk)
ON_MESSAGE(kSwallowed, &NotingFrame::OnSwallowed)
ON_MESSAGE_VOID(WM_IDLEUPDATECMDUI, &NotingFrame::OnIdleUpdate)
END_MESSAGE_MAP()

} // namespace test
