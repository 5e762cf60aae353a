#include "Platform/Heap.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Preparing any amount, page-aligned or not, leaves the heap fit for use.
TEST(Heap, PreparedMemoryServesTheNextAllocations) {
    Heap::prepare(1 << 20);  // before opting in: nothing happens
    Heap::keepFreedMemory();
    for (size_t bytes : {size_t{0}, size_t{1}, size_t{4095}, size_t{4097}, size_t{3} << 20, size_t{1} << 30}) {
        Heap::prepare(bytes);
        std::string block(bytes % (size_t{4} << 20), 'x');
        EXPECT_EQ(block.size(), bytes % (size_t{4} << 20));
    }
}

}  // namespace
