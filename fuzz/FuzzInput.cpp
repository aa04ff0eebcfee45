#include "fuzz/Fuzzer.h"

#include <cstdint>

/// What the fuzzing runtime calls.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    trelundo::fuzz::run({reinterpret_cast<char const*>(data), size});
    return 0;
}
