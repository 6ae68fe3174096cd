// What the updater's accesses cost on a bus, beside bare ones.
//
//   bus_cost record MACHINE IMAGE STEPS    writes the image on a simulated machine, records its accesses and
//                                          prints their number
//   bus_cost compare RULES IMAGE STEPS     writes it into the first card of this computer, and from time to
//                                          time repeats the recorded accesses of that stretch on the second;
//                                          then the other way round
//
// To compare, both cards are open on the same host. Whatever slows this computer down affects both alike,
// since they take turns of a second or so, and each mapping carries the accesses of both. Lines say whose
// turn begins.

#include <arpa/inet.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "card/CardAccess.h"
#include "card/Registers.h"
#include "files/OutputFile.h"
#include "files/WholeFile.h"
#include "hw/ApplicationHooks.h"
#include "hw/PromOperations.h"
#include "linux/host/LinuxHost.h"
#include "linux/pci/CardRules.h"
#include "simulator/host/SimulatedHost.h"
#include "simulator/storage/MachineDirectory.h"
#include "tests/support/ForwardingHost.h"
#include "tests/support/LocalAgent.h"

uint32_t gSerialNumber = 0;
void (*gpTakeTurns)() = nullptr;
void AllowNextEvent() {
    static uint32_t events = 0;
    constexpr uint32_t kEventsInATurn = 5;
    if (gpTakeTurns != nullptr && ++events % kEventsInATurn == 0) {
        gpTakeTurns();
    }
}
void UpdateProgressBar(uint32_t /*bytes*/) {}
bool ShowAlert(const char* title, const char* message) {
    std::fprintf(stderr, "%s: %s\n", title, message);
    return true;
}

namespace {

// A store of a word, as this processor stores it, or a number of loads, at one offset; or the end of a turn.
struct Step {
    uint32_t offset;  // with kStore or kTurn, in the bits that an aligned offset leaves free
    uint32_t wordOrLoads;
};
constexpr uint32_t kStore = 1;
constexpr uint32_t kTurn = 2;

class RecordingHost final : public ForwardingHost {
  public:
    using ForwardingHost::ForwardingHost;

    uint32_t loadWord(const uint32_t* address) override {
        const uint32_t offset = offsetOf(address);
        if (steps.empty() || steps.back().offset != offset) {
            steps.push_back({offset, 0});
        }
        ++steps.back().wordOrLoads;
        ++loads;
        return ForwardingHost::loadWord(address);
    }
    void storeWord(uint32_t* address, uint32_t word) override {
        steps.push_back({offsetOf(address) | kStore, htonl(word)});
        ForwardingHost::storeWord(address, word);
    }

    std::vector<Step> steps;  // in order
    uint64_t loads = 0;       // in all of them
};

std::span<const Step> gSteps;         // those that remain to be made barely
volatile uint32_t* gpBare = nullptr;  // the registers of the card in which they are made
RecordingHost* gpRecorder = nullptr;

void tell(const char* what) {
    std::puts(what);
    std::fflush(stdout);
}

// The card's registers. It stays open until the host ends.
uint32_t* openCard(int index) {
    void* base = nullptr;
    uint32_t bytes = 0;
    if (OpenCard(index, &base, &bytes, nullptr, nullptr) == 0) {
        throw std::runtime_error("A card could not be opened.");
    }
    return static_cast<uint32_t*>(base);
}

void useCard(uint32_t* registers) {
    gpRegisters = registers;
    gbSwap = 0;
    gbSwap = (MacReadULONG(RegisterAt(kByteSwapIDRegister)) & 0xFFFF) == kByteSwapID ? 0 : 1;
    if (GetSerialNumber(&gSerialNumber) != 0) {
        throw std::runtime_error("The card's identity could not be read.");
    }
}

void write(const std::string& image) {
    auto bytes = files::readFile(image);
    if (ProgramConfigProm(bytes.data(), static_cast<uint32_t>(bytes.size())) != 0) {
        throw std::runtime_error("The image was not written.");
    }
}

void record(const std::string& machine, const std::string& image, const std::string& file) {
    const auto directory =
        simulator::MachineDirectory::open(machine, simulator::MachineDirectory::OnOpening::powerUp);
    simulator::SimulatedHost simulated(directory->machine(), {});
    RecordingHost host(simulated);
    useCard(openCard(0));
    host.steps.clear();
    host.loads = 0;
    gpRecorder = &host;
    gpTakeTurns = [] { gpRecorder->steps.push_back({kTurn, 0}); };
    write(image);
    const auto stores =
        std::ranges::count_if(host.steps, [](const Step& step) { return (step.offset & kStore) != 0; });
    std::printf("%ju loads, %jd stores\n", uintmax_t{host.loads}, intmax_t{stores});
    const auto* const bytes = reinterpret_cast<const uint8_t*>(host.steps.data());
    files::writeOutputFile(file, {bytes, host.steps.size() * sizeof(Step)});
}

void makeBareAccessesOfATurn() {
    tell("bare");
    std::size_t made = 0;
    for (const Step& step : gSteps) {
        ++made;
        auto* const word = gpBare + step.offset / sizeof(uint32_t);
        if ((step.offset & kTurn) != 0) {
            break;
        }
        if ((step.offset & kStore) != 0) {
            *word = step.wordOrLoads;
            continue;
        }
        for (uint32_t load = 0; load < step.wordOrLoads; ++load) {
            static_cast<void>(*word);
        }
    }
    gSteps = gSteps.subspan(made);
    tell("updater");
}

void compare(const std::string& rulesFile, const std::string& image, const std::string& stepsFile) {
    const auto text = files::readFile(rulesFile);
    pci::CardRules rules;
    pci::parseCardRules({reinterpret_cast<const char*>(text.data()), text.size()}, rulesFile, rules);
    LocalAgent agent("/sys", std::move(rules));
    host::LinuxHost linuxHost(agent, {}, [] {});
    InstallHost(&linuxHost);
    const std::array cards{openCard(0), openCard(1)};
    const auto bytes = files::readFile(stepsFile);
    gpTakeTurns = makeBareAccessesOfATurn;
    for (std::size_t written = 0; written < cards.size(); ++written) {
        gpBare = cards[1 - written];
        // Both cards await the accesses in the state that the recorded card did.
        useCard(cards[1 - written]);
        useCard(cards[written]);
        gSteps = {reinterpret_cast<const Step*>(bytes.data()), bytes.size() / sizeof(Step)};
        tell("updater");
        write(image);
        makeBareAccessesOfATurn();
    }
    InstallHost(nullptr);
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    try {
        if (words.size() == 4 && words[0] == "record") {
            record(words[1], words[2], words[3]);
        } else if (words.size() == 4 && words[0] == "compare") {
            compare(words[1], words[2], words[3]);
        } else {
            std::fputs("usage: bus_cost record|compare ...\n", stderr);
            return 2;
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bus_cost: %s\n", error.what());
        return 1;
    }
    return 0;
}
