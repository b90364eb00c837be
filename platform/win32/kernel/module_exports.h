// What the floor's libraries offer to callers that ask for a function at run time.
#pragma once

#include "winbase.h"

#include <span>
#include <string_view>

namespace win32 {

struct Export {
    std::string_view name;
    FARPROC function;
};

template <class Function>
Export exported(std::string_view name, Function* function)
{
    return { name, reinterpret_cast<FARPROC>(reinterpret_cast<void (*)()>(function)) };
}

// The exports of one library. A library defines one at namespace scope, in a source that every program of that library
// links anyway (a static library leaves out sources that nobody refers to):
//
//     const Export kExports[] = { exported("MonitorFromWindow", MonitorFromWindow), ... };
//     ModuleExports user32("user32.dll", kExports);
//
// Being made costs two stores; nothing else happens until somebody asks.
class ModuleExports {
public:
    // `name` in lower case, with ".dll"; both are borrowed for ever.
    ModuleExports(std::string_view name, std::span<const Export> exports);
    ModuleExports(const ModuleExports&) = delete;
    ModuleExports& operator=(const ModuleExports&) = delete;

    std::string_view name() const { return name_; }
    FARPROC find(std::string_view function) const;
    HMODULE handle() const;

    // The library of that name in any case, with or without ".dll"; or of that handle. Null if there is none.
    static const ModuleExports* named(std::string_view name);
    static const ModuleExports* of(HMODULE handle);

private:
    const std::string_view name_;
    const std::span<const Export> exports_;
    const ModuleExports* const next_;
};

} // namespace win32
