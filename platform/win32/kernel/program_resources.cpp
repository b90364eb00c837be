#include "platform/win32/kernel/program_resources.h"

#include <cstdint>
#include <utility>

#include <sys/mman.h>
#include <unistd.h>

// Defined by the program's embedded resources; a program without any leaves them undefined and their addresses null.
// Visible, as they lie in the program also when this is part of the shared library.
extern "C" {
[[gnu::weak, gnu::visibility("default")]] extern const std::byte program_resources_begin[];
[[gnu::weak, gnu::visibility("default")]] extern const std::byte program_resources_end[];
}

namespace win32 {

namespace {

ProgramResources embedded()
{
    if (!program_resources_begin)
        return {};
    return { { program_resources_begin, program_resources_end }, true };
}

ProgramResources& current()
{
    static ProgramResources resources = embedded();
    return resources;
}

std::uintptr_t address(const std::byte* byte)
{
    return reinterpret_cast<std::uintptr_t>(byte);
}

} // namespace

const ProgramResources& program_resources()
{
    return current();
}

ProgramResources exchange_program_resources(const ProgramResources& other)
{
    return std::exchange(current(), other);
}

void release_resource_pages(std::span<const std::byte> piece)
{
    const ProgramResources& resources = program_resources();
    const std::uintptr_t first = address(resources.bytes.data());
    const std::uintptr_t past = first + resources.bytes.size();
    const std::uintptr_t piece_first = address(piece.data());
    if (!resources.is_file_mapping || piece_first < first || piece_first >= past || piece.size() > past - piece_first)
        return;
    // all of them: the system maps far more around a page than was read, up to two megabytes
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const std::uintptr_t begin = (first + page - 1) / page * page;
    const std::uintptr_t end = past / page * page;
    if (begin < end)
        (void)::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED); // refused, the pages just stay
}

} // namespace win32
