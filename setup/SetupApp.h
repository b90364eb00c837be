// The installer's application object: brings up the framework, creates the one window and shows it.
#pragma once

#include <afxwin.h>

class SetupApp : public CWinApp {
public:
    SetupApp();

    // FALSE, without a message to the user, when the window cannot be created; the program then ends.
    BOOL InitInstance() override;
    int ExitInstance() override;

protected:
    DECLARE_MESSAGE_MAP()
};
