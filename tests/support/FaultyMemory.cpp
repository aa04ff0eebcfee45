#include "tests/support/FaultyMemory.h"

#include <cstdlib>
#include <new>

namespace {

int remaining = 0;
bool hasFailed = false;

void* allocate(std::size_t size) {
    if (remaining > 0 && --remaining == 0) {
        hasFailed = true;
        throw std::bad_alloc{};
    }
    if (auto* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc{};
}

} // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace trelundo::test {

void failAllocation(int number) {
    hasFailed = false;
    remaining = number;
}

bool hasAllocationFailed() { return hasFailed; }

} // namespace trelundo::test
