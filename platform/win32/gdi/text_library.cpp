#include "platform/win32/gdi/text_library.h"

#include <optional>

#include <dlfcn.h>

namespace win32 {

namespace {

template <class Function>
bool resolve(void* library, const char* name, Function& function)
{
    function = reinterpret_cast<Function>(::dlsym(library, name));
    return function != nullptr;
}

std::optional<TextLibrary> load()
{
    // Never closed: glib cannot be unloaded. A symbol is looked for in what the library depends on as well.
    void* library = ::dlopen("libpangoft2-1.0.so.0", RTLD_NOW | RTLD_LOCAL);
    if (!library)
        return std::nullopt;
    TextLibrary functions;
    bool is_whole = true;
#define RESOLVE_TEXT_FUNCTION(name) is_whole = resolve(library, #name, functions.name) && is_whole;
    TEXT_LIBRARY_FUNCTIONS(RESOLVE_TEXT_FUNCTION)
#undef RESOLVE_TEXT_FUNCTION
    return is_whole ? std::optional(functions) : std::nullopt;
}

} // namespace

const TextLibrary* TextLibrary::get()
{
    static const std::optional<TextLibrary> library = load();
    return library ? &*library : nullptr;
}

} // namespace win32
