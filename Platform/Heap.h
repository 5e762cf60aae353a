#pragma once

#include <cstddef>

// How a process that lives for one command uses its memory. On a virtual machine the
// first touch of each page traps into the kernel on its own, about 12 µs apiece on ours:
// for a command that reads a large answer that weighs more than all its other work.
namespace Heap {

// Freed memory stays in the process for the allocations that follow, instead of going
// back to the system and coming back page by page. For a process about to end anyway.
void keepFreedMemory();

// Maps the pages for the next `bytes` of allocations in one call, several times cheaper
// than a trap per page. Does nothing unless keepFreedMemory was called: a long-lived
// process would hand the pages straight back.
void prepare(size_t bytes);

}  // namespace Heap
