// The process's code page for the length of a test.
#pragma once

#include "platform/win32/kernel/code_page.h"

class AnsiCodePage {
public:
    explicit AnsiCodePage(UINT number) : before_(win32::exchange_ansi_code_page(number)) {}
    ~AnsiCodePage() { win32::exchange_ansi_code_page(before_); }
    AnsiCodePage(const AnsiCodePage&) = delete;
    AnsiCodePage& operator=(const AnsiCodePage&) = delete;

private:
    const UINT before_;
};
