// The commands and texts of client.xml, the skin of the client and Uninstall.
#pragma once

#include <windows.h>

namespace client {

enum Command : UINT {
    kCommandCheck = 20001,
    kCommandClose = 20002,
    kCommandMenu = 20003,
    kCommandRemove = 20004,
    kCommandCancel = 20005,
    kCommandAutoStart = 20006,
    kCommandUninstall = 20007,
};

enum TextId : UINT {
    kTextProduct = 101,
    kTextWhole = 102,
    kTextChecking = 103,
    kTextIncomplete = 104,
    kTextNotChecked = 105,
    kTextAllThere = 106,     // number of files
    kTextCheckedSoFar = 107, // checked, all
    kTextDamage = 108,       // missing, changed, all
    kTextNoList = 109,
    kTextVersion = 110,
    kTextConnection = 111,
    kTextFolder = 112,
    kTextNotFound = 113,
    kTextVersions = 114, // the client's, its components'
    kTextDirect = 115,
    kTextProxy = 116, // host, port
    kTextMissing = 117,
    kTextChanged = 118,
    kTextUnreadable = 119,
    kTextMenuCheck = 120,
    kTextMenuAutoStart = 121,
    kTextMenuUninstall = 122,
    kTextMenuExit = 123,
    kTextTagline = 124,

    kTextUninstall = 201,
    kTextAsk = 202,
    kTextWhatGoes = 203,
    kTextRemoving = 204,
    kTextRemovedSoFar = 205, // done, all
    kTextRemoved = 206,
    kTextNothingLeft = 207, // removed
    kTextSomeKept = 208,    // removed, kept
    kTextNotDone = 209,
    kTextSomeFailed = 210, // removed, failed, kept
    kTextCannotRemove = 211,
    kTextNoListToRemove = 212,
    kTextNotInstalled = 213,
    kTextChangedByUser = 214,
    kTextOtherClient = 215,
    kTextNoPermission = 216,
    kTextErrorNumber = 217, // error
    kTextNoHome = 218,
};

} // namespace client
