// A library that the system has, or has in another form, while a test wants it.
#pragma once

#include "platform/win32/kernel/module_exports.h"

#include <array>
#include <forward_list>
#include <memory>
#include <string>
#include <string_view>

namespace test {

// Stands before the floor's own library of that name (lower case, with ".dll"), offering one function or none.
class FakeLibrary {
public:
    explicit FakeLibrary(std::string_view name, win32::Export function = {}) : entry_(Entries().emplace_front())
    {
        entry_.name = name;
        entry_.functions = { function };
        // The list of libraries has no end of life: an entry in it stays, under a name that nobody asks for.
        entry_.module = std::make_unique<win32::ModuleExports>(entry_.name, entry_.functions);
    }
    ~FakeLibrary() { entry_.name.assign(entry_.name.size(), '?'); }
    FakeLibrary(const FakeLibrary&) = delete;
    FakeLibrary& operator=(const FakeLibrary&) = delete;

private:
    struct Entry {
        std::string name;
        std::array<win32::Export, 1> functions;
        std::unique_ptr<win32::ModuleExports> module;
    };
    static std::forward_list<Entry>& Entries()
    {
        static std::forward_list<Entry> entries;
        return entries;
    }

    Entry& entry_;
};

} // namespace test
