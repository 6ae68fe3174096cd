#include "benchmarks/CardBenchmarks.h"

#include <benchmark/benchmark.h>

#include <algorithm>

#include "benchmarks/BareLoop.h"
#include "benchmarks/Images.h"
#include "benchmarks/PlainMemoryHost.h"
#include "card/Registers.h"
#include "hw/ApplicationHooks.h"
#include "hw/JtagPort.h"
#include "hw/PromOperations.h"
#include "platform/CardDriver.h"
#include "simulator/host/SimulatedHost.h"
#include "simulator/machine/DefaultMachine.h"

// An application that does nothing.
uint32_t gSerialNumber = 0;
void AllowNextEvent() {}
void UpdateProgressBar(uint32_t /*bytes*/) {}
bool ShowAlert(const char* /*title*/, const char* /*message*/) {
    return false;
}

namespace benchmarks {
namespace {

constexpr int kRepetitions = 15;
constexpr int kImageRepetitions = 5;
// Small images are played often enough for every size to take a measurable time.
constexpr std::size_t kBytesToPlay = 1'000'000;

PlainMemoryHost plainMemory;

class CountingHost final : public PlainMemoryHost {
  public:
    images::Accesses accesses;

    uint32_t loadWord(const uint32_t* address) override {
        ++accesses.loads;
        return PlainMemoryHost::loadWord(address);
    }
    void storeWord(uint32_t* address, uint32_t word) override {
        ++accesses.stores;
        PlainMemoryHost::storeWord(address, word);
    }
};

void use(PlainMemoryHost& host) {
    InstallHost(&host);
    gpRegisters = host.registers();
    gbSwap = 0;
}

int32_t play(std::vector<uint8_t>& image) {
    tagSXsvfInfo info;
    PlayOnCard(&info, image.data(), static_cast<uint32_t>(image.size()));
    return info.iResult;
}

void bareLoop(benchmark::State& state) {
    static const images::Accesses accesses = [] {
        CountingHost counting;
        use(counting);
        auto image = unmaskedFirmwareImage();
        play(image);
        return counting.accesses;
    }();
    use(plainMemory);
    for (auto _ : state) {
        makeAccesses(accesses);
    }
    state.counters[kLoads] = static_cast<double>(accesses.loads);
    state.counters[kStores] = static_cast<double>(accesses.stores);
}

void playerOverPlainMemory(benchmark::State& state) {
    auto image = unmaskedFirmwareImage();
    use(plainMemory);
    for (auto _ : state) {
        if (play(image) != kXsvfNoError) {
            state.SkipWithError("the image did not play to its end");
        }
    }
}

// Everything that an update does to the card: it plays the image, then writes the identity back, protects it
// and reads it.
void simulatedUpdate(benchmark::State& state) {
    auto image = firmwareImage();
    simulator::Machine machine;
    simulator::addDefaultCards(machine);
    machine.powerOn();
    simulator::SimulatedHost host(machine, {});
    InstallHost(&host);
    gSerialNumber = machine.card(0).identity();
    const auto connection = host.openService(host.servicesOfClass(card_driver::kServiceClass).at(0));
    gpRegisters = static_cast<uint32_t*>(host.mapMemory(connection.value(), 0).value().base);
    gbSwap = 0;
    for (auto _ : state) {
        if (ProgramConfigProm(image.data(), static_cast<uint32_t>(image.size())) != 0) {
            state.SkipWithError("the update failed");
        }
    }
    if (!machine.ledger().empty() || machine.card(0).acceptableConfiguration()->version != 12) {
        state.SkipWithError("the card did not get the new firmware");
    }
    InstallHost(nullptr);
}

void imageOfSize(benchmark::State& state, std::size_t bytes) {
    auto image = imageOfShifts(bytes);
    use(plainMemory);
    for (auto _ : state) {
        if (play(image) != kXsvfNoError) {
            state.SkipWithError("the image did not play to its end");
        }
    }
    state.counters[kImageBytes] = static_cast<double>(image.size());
}

void repeat(benchmark::internal::Benchmark* benchmark, std::size_t iterations, int repetitions) {
    benchmark->Iterations(static_cast<benchmark::IterationCount>(iterations))
        ->Repetitions(repetitions)
        ->Unit(benchmark::kMillisecond);
}

}  // namespace

std::string imageName(std::size_t bytes) {
    return "image of " + std::to_string(bytes / 1000) + " kB";
}

void registerCardBenchmarks() {
    repeat(benchmark::RegisterBenchmark(kBareLoop, bareLoop), 1, kRepetitions);
    repeat(benchmark::RegisterBenchmark(kPlayer, playerOverPlainMemory), 1, kRepetitions);
    repeat(benchmark::RegisterBenchmark(kSimulatedUpdate, simulatedUpdate), 1, kRepetitions);
    for (const std::size_t bytes : kImageSizes) {
        repeat(benchmark::RegisterBenchmark(imageName(bytes).c_str(), imageOfSize, bytes),
               std::max<std::size_t>(kBytesToPlay / bytes, 1), kImageRepetitions);
    }
}

}  // namespace benchmarks
