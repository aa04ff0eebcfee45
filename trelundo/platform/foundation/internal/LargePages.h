#pragma once

#include <cstddef>

namespace trelundo {

inline constexpr std::size_t largePageSize = 2U << 20; // bytes

/// Memory of at least `size` bytes on large pages where the system has them, ordinary memory elsewhere. Null
/// when there is not as much. To be given back with freeLargePages().
void* allocateLargePages(std::size_t size);
void freeLargePages(void* memory);

} // namespace trelundo
