// The tables behind the code page functions: a code page is read once from iconv and kept for good, so that conversion
// asks no library and takes no lock.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "windef.h"

namespace win32 {

// A code page of one and two byte characters, whole.
struct CodePageTables {
    std::array<bool, 0x100> lead{};              // whether a byte begins a pair
    std::array<char16_t, 0x10000> wide{};        // the unit of a byte, or of lead << 8 | trail; 0: none (or NUL's own)
    std::array<std::uint16_t, 0x10000> narrow{}; // the byte, or lead << 8 | trail, of a unit; 0: the page lacks it
    bool ascii = false;                          // bytes below 0x80 are ASCII, as nearly everywhere
};

struct CodePage {
    std::string iconv_name;
    std::unique_ptr<const CodePageTables> tables; // null: a page of longer characters, which iconv itself converts
};

// The page of that number, CP_ACP included; null when iconv knows none. CP_UTF8 is not among them.
const CodePage* find_code_page(UINT number);

// The number behind CP_ACP.
UINT ansi_code_page();

// Makes another code page the process's own and returns the one before. For tests; an unknown number changes nothing.
UINT exchange_ansi_code_page(UINT number);

} // namespace win32
