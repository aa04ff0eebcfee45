// Runs a fuzzer over kept inputs where there is no fuzzing runtime: the inputs that once found a fault.
// usage: PROGRAM FOLDER

#include "fuzz/Fuzzer.h"
#include "tests/support/Files.h"

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    int count = 0;
    for (auto const& each : std::filesystem::directory_iterator(argv[1])) {
        std::fprintf(stderr, "%s\n", each.path().filename().c_str());
        trelundo::fuzz::run(trelundo::test::readText(each));
        ++count;
    }
    return count > 0 ? 0 : 1;
}
