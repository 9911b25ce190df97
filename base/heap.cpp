#include "base/heap.h"

#include <malloc.h>

namespace {

/// Pictures of people, which come and go all day, stay below it.
constexpr int kLargeBlock = 256 * 1024;
/// What may lie unused at the end of the heap.
constexpr int kSlack = 128 * 1024;

}  // namespace

void Heap::giveBackLargeBlocks() {
#ifdef __GLIBC__
    ::mallopt(M_MMAP_THRESHOLD, kLargeBlock);
    ::mallopt(M_TRIM_THRESHOLD, kSlack);
#endif
}

void Heap::giveBackGaps() {
#ifdef __GLIBC__
    ::malloc_trim(kSlack);
#endif
}
