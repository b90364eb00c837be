// What a test program takes from the heap. A program whose tests ask is built with CountedHeap.cpp.
#pragma once

#include <cstddef>

namespace test {

std::size_t heap_allocations(); // by `new`, of all threads

} // namespace test
