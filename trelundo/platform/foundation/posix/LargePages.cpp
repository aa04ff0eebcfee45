#include "trelundo/platform/foundation/internal/LargePages.h"

#include <cstdlib>
#include <sys/mman.h>

namespace trelundo {

void* allocateLargePages(std::size_t size) {
    auto* const memory =
        std::aligned_alloc(largePageSize, (size + largePageSize - 1) / largePageSize * largePageSize);
#ifdef MADV_HUGEPAGE
    // Advice only: without large pages the memory serves as well.
    if (memory) madvise(memory, size, MADV_HUGEPAGE);
#endif
    return memory;
}

void freeLargePages(void* memory) { std::free(memory); }

} // namespace trelundo
