#include "benchmarks/HostBenchmarks.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>

#include <ctime>
#include <filesystem>

#include "linux/host/LinuxHost.h"
#include "linux/host/MappedWord.h"
#include "platform/CardDriver.h"
#include "tests/support/TemporaryDirectory.h"

namespace benchmarks {
namespace {

constexpr int kRepetitions = 15;
constexpr int kRounds = 10'000;
// As the player makes them: a store, and the loads that let it settle.
constexpr int kLoadsInARow = 15;
constexpr double kBusSeconds = 0.5e-6;

// One card, whose registers are a file. It counts as simulated, so that its loads are not slowed down.
class OneCard final : public host::CardAgent {
  public:
    std::optional<std::vector<pci::FoundCard>> cards() override {
        return {
            {{.address = "0000:05:01.0", .name = "", .location = "", .isSimulated = true, .refusal = ""}}};
    }
    Host::RightAnswer claim(bool) override { return Host::RightAnswer::granted; }
    void letGo() override {}
    std::optional<pci::OpenedRange> openRange(const std::string&, uint32_t) override {
        const std::filesystem::path path = folder_.path() / "registers";
        files::OpenFile file(AT_FDCWD, path, O_RDWR | O_CREAT, path);
        std::filesystem::resize_file(path, 0x1000);
        return pci::OpenedRange{.file = std::move(file), .offsetInPage = 0, .bytes = 0x200};
    }
    void beginWrite() override {}
    void endWrite() override {}
    bool powerOff() override { return false; }

  private:
    TemporaryDirectory folder_;
};

// Takes its time, and ends no earlier than the load that the word comes from.
uint32_t spend(int steps, uint32_t word) {
    for (int step = 0; step < steps; ++step) {
        word = word * 0x9E3779B1 + 1;
    }
    return word;
}

int stepsInBusTime() {
    constexpr int kSteps = 10'000'000;
    const std::clock_t start = std::clock();
    benchmark::DoNotOptimize(spend(kSteps, 1));
    const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    return static_cast<int>(kSteps * kBusSeconds / seconds);
}

struct Plain {
    static uint32_t load(uint32_t* word) { return host::mapped::load(word); }
    static void store(uint32_t* word, uint32_t value) { host::mapped::store(word, value); }
};

struct ThroughHost {
    static uint32_t load(uint32_t* word) { return InstalledHost().loadWord(word); }
    static void store(uint32_t* word, uint32_t value) { InstalledHost().storeWord(word, value); }
};

template <typename Access>
void makeAccesses(uint32_t* word, int steps) {
    for (int round = 0; round < kRounds; ++round) {
        Access::store(word, spend(steps, 0));
        for (int load = 0; load < kLoadsInARow; ++load) {
            benchmark::DoNotOptimize(spend(steps, Access::load(word)));
        }
    }
}

template <typename Access>
void accesses(benchmark::State& state, int steps) {
    OneCard card;
    host::LinuxHost host(card, {});
    InstallHost(&host);
    const auto connection = host.openService(host.servicesOfClass(card_driver::kServiceClass).at(0));
    auto* const word = static_cast<uint32_t*>(host.mapMemory(connection.value(), 0).value().base);
    for (auto _ : state) {
        makeAccesses<Access>(word, steps);
    }
    InstallHost(nullptr);
}

template <typename Access>
void add(const char* name, int steps) {
    benchmark::RegisterBenchmark(name, accesses<Access>, steps)
        ->Iterations(1)
        ->Repetitions(kRepetitions)
        ->Unit(benchmark::kMillisecond);
}

}  // namespace

void registerHostBenchmarks() {
    const int steps = stepsInBusTime();
    add<Plain>(kPlainAccesses, 0);
    add<ThroughHost>(kHostAccesses, 0);
    add<Plain>(kPlainAccessesOnABus, steps);
    add<ThroughHost>(kHostAccessesOnABus, steps);
}

}  // namespace benchmarks
