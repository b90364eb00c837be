#include "tests/support/CountedHeap.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> allocations = 0;

} // namespace

std::size_t test::heap_allocations()
{
    return allocations;
}

// Out of line: where only some of them are inlined, the compiler sees memory of one kind given back as another.
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t& /*kind*/) noexcept
{
    allocations++;
    return std::malloc(size ? size : 1);
}

[[gnu::noinline]] void* operator new(std::size_t size)
{
    if (void* const memory = operator new(size, std::nothrow))
        return memory;
    std::abort();
}

[[gnu::noinline]] void operator delete(void* memory) noexcept
{
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}
