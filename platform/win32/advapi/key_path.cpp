#include "platform/win32/advapi/key_path.h"

#include "winnls.h"

#include <utility>

namespace win32 {

std::optional<std::vector<std::string>> split_key_path(const char* text)
{
    std::vector<std::string> components;
    if (!text)
        return components;
    for (const char* c = text; *c;) {
        std::string component;
        for (; *c && *c != '\\'; component += *c++) {
            if (IsDBCSLeadByte(static_cast<BYTE>(*c)) && c[1])
                component += *c++;
        }
        if (component.empty() || component.size() > kMostKeyNameBytes || components.size() == kMostKeyDepth)
            return std::nullopt;
        components.push_back(std::move(component));
        if (*c)
            c++;
    }
    return components;
}

std::string folded(std::string name)
{
    CharLowerBuffA(name.data(), static_cast<DWORD>(name.size()));
    return name;
}

} // namespace win32
