#pragma once

// Collects the benchmarks' results and prints a table of ratios and their goals.
//
// Every ratio is that of the shortest of several repetitions, which were taken in turns: the shortest shows
// what the machine can do undisturbed.

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace benchmarks {

class RatioTable : public benchmark::BenchmarkReporter {
  public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    // Prints the table.
    void Finalize() override;

    // After the benchmarks have run: true if all of them did and every ratio is within its goal.
    bool allMet() const { return allMet_; }

  private:
    struct Least {
        double seconds;
        std::map<std::string, double> counters;
    };

    void printRow(const std::string& what, double ratio, double goal);

    std::map<std::string, Least> least_;  // by the benchmark's name
    bool allMet_ = true;
};

}  // namespace benchmarks
