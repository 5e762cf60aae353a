#include "Platform/Heap.h"

#include <malloc.h>
#include <sys/mman.h>

#include <cstdint>
#include <cstdlib>

namespace Heap {

namespace {

bool keeping = false;

// Larger blocks than this still get their own mapping, and go back when freed.
constexpr size_t largestKept = size_t{32} << 20;
constexpr uintptr_t pageSize = 4096;

}  // namespace

void keepFreedMemory() {
    keeping = mallopt(M_MMAP_THRESHOLD, static_cast<int>(largestKept)) == 1 &&
              mallopt(M_TRIM_THRESHOLD, static_cast<int>(largestKept * 32)) == 1;
}

// The block comes from the top of the heap; once freed, it stays there, mapped, and the
// next allocations are cut from it.
void prepare(size_t bytes) {
    if (!keeping || bytes == 0 || bytes > largestKept) return;
    void* block = std::malloc(bytes);
    if (!block) return;
    uintptr_t begin = (reinterpret_cast<uintptr_t>(block) + pageSize - 1) & ~(pageSize - 1);
    uintptr_t end = (reinterpret_cast<uintptr_t>(block) + bytes) & ~(pageSize - 1);
    // Refused by kernels before 5.14; the pages then come one trap at a time, as without.
    if (end > begin) madvise(reinterpret_cast<void*>(begin), end - begin, MADV_POPULATE_WRITE);
    std::free(block);
}

}  // namespace Heap
