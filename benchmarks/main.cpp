// Compares the cost of the updater with the least possible, and prints a table of ratios. Exits with 0 if
// every ratio is within its goal.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <exception>
#include <vector>

#include "benchmarks/CardBenchmarks.h"
#include "benchmarks/HostBenchmarks.h"
#include "benchmarks/ProgramBenchmarks.h"
#include "benchmarks/RatioTable.h"

int main(int argc, char** argv) {
    // Takes the repetitions of all benchmarks in turns, so that noise affects numerators and denominators
    // alike.
    char interleaving[] = "--benchmark_enable_random_interleaving=true";
    std::vector<char*> arguments(argv, argv + argc);
    arguments.insert(arguments.begin() + 1, interleaving);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 2;
    }
    try {
        benchmarks::registerCardBenchmarks();
        benchmarks::registerHostBenchmarks();
        benchmarks::registerProgramBenchmarks();
        benchmarks::RatioTable table;
        benchmark::RunSpecifiedBenchmarks(&table);
        return table.allMet() ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "benchmarks: %s\n", error.what());
        return 2;
    }
}
