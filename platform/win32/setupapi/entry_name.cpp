#include "platform/win32/setupapi/entry_name.h"

#include <algorithm>
#include <cstddef>

namespace win32 {

namespace {

bool is_plain_component(std::string_view component)
{
    return !component.empty() && component != "." && component != ".." && component.find(':') == std::string_view::npos;
}

} // namespace

bool is_inside_name(std::string_view name)
{
    for (;;) {
        const std::size_t separator = name.find_first_of("\\/");
        if (!is_plain_component(name.substr(0, separator)))
            return false;
        if (separator == std::string_view::npos)
            return true;
        name.remove_prefix(separator + 1);
    }
}

} // namespace win32
