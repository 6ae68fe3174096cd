#include "benchmarks/RatioTable.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "benchmarks/CardBenchmarks.h"
#include "benchmarks/HostBenchmarks.h"
#include "benchmarks/Images.h"
#include "benchmarks/ProgramBenchmarks.h"

namespace benchmarks {
namespace {

constexpr double kMostPlayer = 1.10;
constexpr double kMostSimulated = 3;
constexpr double kMostOnABus = 1.10;
constexpr double kMostStart = 1.25;
constexpr double kMostMemory = 1.15;
constexpr double kMostUneven = 1.10;

}  // namespace

bool RatioTable::ReportContext(const Context& /*context*/) {
    std::puts("Measuring; this takes about a minute.");
    return true;
}

void RatioTable::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration) {
            continue;
        }
        if (run.error_occurred) {
            std::printf("%s: %s\n", run.run_name.function_name.c_str(), run.error_message.c_str());
            allMet_ = false;
            continue;
        }
        // A separate process reports its own time.
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
    for (const char* name : {kBareLoop, kPlayer, kSimulatedUpdate, kUpdateInWindow, kPlainWindow, kUpdater,
                             kPlainAccesses, kHostAccesses, kPlainAccessesOnABus, kHostAccessesOnABus}) {
        allMet_ = allMet_ && least_.contains(name);
    }
    for (const std::size_t bytes : kImageSizes) {
        allMet_ = allMet_ && least_.contains(imageName(bytes));
    }
    if (!allMet_) {
        std::puts("Not everything was measured, so there is no table.");
        return;
    }

    std::printf("\n| %-63s | ratio | goal   |\n|%s|------:|-------:|\n", "least of the repetitions",
                std::string(65, '-').c_str());
    const double bare = secondsOf(kBareLoop);
    printRow("player over plain memory / bare loop of its accesses", secondsOf(kPlayer) / bare, kMostPlayer);
    printRow("simulated update / the same bare loop", secondsOf(kSimulatedUpdate) / bare, kMostSimulated);
    printRow("simulated update in the window / the same bare loop", secondsOf(kUpdateInWindow) / bare,
             kMostSimulated);
    printRow("accesses of half a microsecond, the host's / plain ones",
             secondsOf(kHostAccessesOnABus) / secondsOf(kPlainAccessesOnABus), kMostOnABus);
    printRow("start to first window drawn, updater / hand-built window",
             secondsOf(kUpdater) / secondsOf(kPlainWindow), kMostStart);
    const auto imageBytes = static_cast<double>(firmwareImage().size());
    printRow("peak memory of an update less the image / hand-built window",
             (peakOf(kUpdateInWindow) - imageBytes) / peakOf(kPlainWindow), kMostMemory);

    std::vector<double> perByte;
    std::ranges::transform(kImageSizes, std::back_inserter(perByte), [this](std::size_t bytes) {
        const Least& least = least_.at(imageName(bytes));
        return least.seconds / least.counters.at(kImageBytes);
    });
    const auto [lowest, highest] = std::ranges::minmax(perByte);
    printRow("cost per byte of image, 1 kB to 8 MB: highest / lowest", highest / lowest, kMostUneven);

    std::puts("\nTimes of this machine:");
    for (const auto& [name, least] : least_) {
        std::printf("  %-26s %9.2f ms", name.c_str(), least.seconds * 1e3);
        if (least.counters.contains(kPeakBytes)) {
            std::printf(", %6.2f ms of processor time until the window, %5.1f MB at most",
                        least.counters.at(kWorkedSeconds) * 1e3, least.counters.at(kPeakBytes) / 1e6);
        }
        std::puts("");
    }
    const auto& accesses = least_.at(kBareLoop).counters;
    std::printf("  accesses: %.0f loads, %.0f stores\n", accesses.at(kLoads), accesses.at(kStores));
}

void RatioTable::printRow(const std::string& what, double ratio, double goal) {
    const bool isMet = ratio <= goal;
    allMet_ = allMet_ && isMet;
    std::printf("| %-63s | %5.2f | ≤ %4.2f |%s\n", what.c_str(), ratio, goal, isMet ? "" : "  missed");
}

}  // namespace benchmarks
