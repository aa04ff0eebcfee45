#include "benchmarks/Report.h"

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    trelundo::bench::TableReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
