// Runs a fuzzer over kept inputs where there is no fuzzing runtime: the inputs that once found a fault.
// usage: PROGRAM FOLDER

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    int count = 0;
    for (auto const& each : std::filesystem::directory_iterator(argv[1])) {
        std::fprintf(stderr, "%s\n", each.path().filename().c_str());
        std::ifstream stream(each.path(), std::ios::binary);
        std::vector<char> const bytes{std::istreambuf_iterator(stream), {}};
        LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size());
        ++count;
    }
    return count > 0 ? 0 : 1;
}
