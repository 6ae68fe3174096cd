#include "benchmarks/RatioTable.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "benchmarks/CardBenchmarks.h"
#include "benchmarks/Images.h"
#include "benchmarks/ProgramBenchmarks.h"

namespace benchmarks {
namespace {

constexpr double kMostPlayer = 1.10;
constexpr double kMostSimulated = 3;
constexpr double kMostStart = 1.3;
constexpr double kMostMemory = 1.25;
constexpr double kMostUneven = 1.10;

}  // namespace

bool RatioTable::ReportContext(const Context& /*context*/) {
    std::puts("Measuring; this takes about a minute.");
    return true;
}

void RatioTable::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration)
            continue;
        if (run.error_occurred) {
            std::printf("%s: %s\n", run.run_name.function_name.c_str(), run.error_message.c_str());
            allMet_ = false;
            continue;
        }
        // A process's own time is the one that it told.
        const bool isProcess = run.counters.contains(kPeakBytes);
        const double seconds = (isProcess ? run.real_accumulated_time : run.cpu_accumulated_time) /
                               static_cast<double>(run.iterations);
        auto& least = least_.try_emplace(run.run_name.function_name, Least{seconds, {}}).first->second;
        least.seconds = std::min(least.seconds, seconds);
        for (const auto& [name, counter] : run.counters) {
            double& value = least.counters.try_emplace(name, counter.value).first->second;
            value = std::min(value, counter.value);
        }
    }
}

void RatioTable::Finalize() {
    const auto secondsOf = [this](const std::string& name) { return least_.at(name).seconds; };
    const auto peakOf = [this](const std::string& name) { return least_.at(name).counters.at(kPeakBytes); };
    for (const char* name : {kBareLoop, kPlayer, kSimulatedUpdate, kUpdateInWindow, kEmptyWindow, kTextWindow,
                             kControlsWindow, kUpdater})
        allMet_ = allMet_ && least_.contains(name);
    for (const std::size_t bytes : kImageSizes)
        allMet_ = allMet_ && least_.contains(imageName(bytes));
    if (!allMet_) {
        std::puts("Not everything was measured, so there is no table.");
        return;
    }

    std::printf("\n| %-58s | ratio | goal   |\n|%s|------:|-------:|\n", "least of the repetitions",
                std::string(60, '-').c_str());
    const double bare = secondsOf(kBareLoop);
    printRow("player over plain memory / bare loop of its accesses", secondsOf(kPlayer) / bare, kMostPlayer);
    printRow("simulated update / the same bare loop", secondsOf(kSimulatedUpdate) / bare, kMostSimulated);
    printRow("simulated update in the window / the same bare loop", secondsOf(kUpdateInWindow) / bare,
             kMostSimulated);
    const auto workOf = [this](const std::string& name) {
        return least_.at(name).counters.at(kWorkedSeconds);
    };
    printRow("start to first window, updater / empty window", secondsOf(kUpdater) / secondsOf(kEmptyWindow),
             kMostStart);
    for (const char* window : {kTextWindow, kControlsWindow})
        printRow("  " + std::string(window) + " / empty window", secondsOf(window) / secondsOf(kEmptyWindow));
    printRow("start in processor time, updater / empty window", workOf(kUpdater) / workOf(kEmptyWindow));
    for (const char* window : {kTextWindow, kControlsWindow})
        printRow("  " + std::string(window) + " / empty window", workOf(window) / workOf(kEmptyWindow));
    const auto imageBytes = static_cast<double>(firmwareImage().size());
    printRow("peak memory of an update less the image / empty window",
             (peakOf(kUpdateInWindow) - imageBytes) / peakOf(kEmptyWindow), kMostMemory);
    for (const char* window : {kTextWindow, kControlsWindow})
        printRow("  " + std::string(window) + " / empty window", peakOf(window) / peakOf(kEmptyWindow));

    std::vector<double> perByte;
    std::ranges::transform(kImageSizes, std::back_inserter(perByte), [this](std::size_t bytes) {
        const Least& least = least_.at(imageName(bytes));
        return least.seconds / least.counters.at(kImageBytes);
    });
    const auto [lowest, highest] = std::ranges::minmax(perByte);
    printRow("cost per byte of image, 1 kB to 8 MB: highest / lowest", highest / lowest, kMostUneven);

    std::puts("\nTimes of this machine:");
    for (const auto& [name, least] : least_)
        std::printf("  %-26s %9.2f ms\n", name.c_str(), least.seconds * 1e3);
    const auto& accesses = least_.at(kBareLoop).counters;
    std::printf("  accesses: %.0f loads, %.0f stores\n", accesses.at(kLoads), accesses.at(kStores));
}

void RatioTable::printRow(const std::string& what, double ratio, double goal) {
    const bool isMet = ratio <= goal;
    allMet_ = allMet_ && isMet;
    std::printf("| %-58s | %5.2f | ≤ %4.2f |%s\n", what.c_str(), ratio, goal, isMet ? "" : "  missed");
}

void RatioTable::printRow(const std::string& what, double ratio) {
    std::printf("| %-58s | %5.2f |        |\n", what.c_str(), ratio);
}

}  // namespace benchmarks
