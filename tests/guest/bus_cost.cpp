// What the updater's accesses cost on a bus, beside bare ones.
//
//   bus_cost record MACHINE IMAGE STEPS    writes the image on a simulated machine and keeps its accesses
//   bus_cost updater RULES IMAGE           writes it into the first card of this computer
//   bus_cost bare REGISTERS STEPS          makes the kept accesses in a file with a card's registers
//
// The last two print a line when the accesses begin and one when they end.

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "card/CardAccess.h"
#include "card/Registers.h"
#include "files/OpenFile.h"
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
void AllowNextEvent() {}
void UpdateProgressBar(uint32_t /*bytes*/) {}
bool ShowAlert(const char* title, const char* message) {
    std::fprintf(stderr, "%s: %s\n", title, message);
    return true;
}

namespace {

// A store of a word, or a number of loads, at one offset.
struct Step {
    uint32_t offset;  // with kStore, in the bits that an aligned offset leaves free
    uint32_t wordOrLoads;
};
constexpr uint32_t kStore = 1;

class RecordingHost final : public ForwardingHost {
  public:
    using ForwardingHost::ForwardingHost;

    uint32_t loadWord(const uint32_t* address) override {
        const uint32_t offset = offsetOf(address);
        if (steps.empty() || steps.back().offset != offset) {
            steps.push_back({offset, 0});
        }
        ++steps.back().wordOrLoads;
        return ForwardingHost::loadWord(address);
    }
    void storeWord(uint32_t* address, uint32_t word) override {
        steps.push_back({offsetOf(address) | kStore, word});
        ForwardingHost::storeWord(address, word);
    }

    std::vector<Step> steps;  // in order
};

void tell(const char* what) {
    std::puts(what);
    std::fflush(stdout);
}

uint32_t openFirstCard() {
    void* base = nullptr;
    uint32_t bytes = 0;
    const uint32_t connection =
        GetNumberOfCardsInstalled() == 0 ? 0 : OpenCard(0, &base, &bytes, nullptr, nullptr);
    if (connection == 0) {
        throw std::runtime_error("There is no card.");
    }
    gpRegisters = static_cast<uint32_t*>(base);
    gbSwap = (MacReadULONG(RegisterAt(kByteSwapIDRegister)) & 0xFFFF) == kByteSwapID ? 0 : 1;
    if (GetSerialNumber(&gSerialNumber) != 0) {
        throw std::runtime_error("The card's identity could not be read.");
    }
    return connection;
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
    const uint32_t connection = openFirstCard();
    host.steps.clear();
    write(image);
    const auto* const bytes = reinterpret_cast<const uint8_t*>(host.steps.data());
    files::writeOutputFile(file, {bytes, host.steps.size() * sizeof(Step)});
    CloseCard(connection);
}

void update(const std::string& rulesFile, const std::string& image) {
    const auto text = files::readFile(rulesFile);
    pci::CardRules rules;
    pci::parseCardRules({reinterpret_cast<const char*>(text.data()), text.size()}, rulesFile, rules);
    LocalAgent agent("/sys", std::move(rules));
    host::LinuxHost host(agent, {}, [] {});
    InstallHost(&host);
    const uint32_t connection = openFirstCard();
    tell("begins");
    write(image);
    tell("ends");
    CloseCard(connection);
    InstallHost(nullptr);
}

void* mapped(const std::string& file, int flags, int protection, std::size_t bytes) {
    const files::OpenFile open(AT_FDCWD, file, flags | O_CLOEXEC, file);
    void* const there = ::mmap(nullptr, bytes, protection, MAP_SHARED, open.descriptor(), 0);
    if (there == MAP_FAILED) {
        throw std::runtime_error(file + " could not be mapped.");
    }
    return there;
}

void makeBareAccesses(const std::string& registersFile, const std::string& stepsFile) {
    const auto bytes = files::readFile(stepsFile);
    auto* const registers =
        static_cast<uint32_t*>(mapped(registersFile, O_RDWR | O_SYNC, PROT_READ | PROT_WRITE, 0x1000));
    const std::span steps(reinterpret_cast<const Step*>(bytes.data()), bytes.size() / sizeof(Step));
    tell("begins");
    for (const Step& step : steps) {
        auto* const word = static_cast<volatile uint32_t*>(registers + step.offset / sizeof(uint32_t));
        if ((step.offset & kStore) != 0) {
            *word = __builtin_bswap32(step.wordOrLoads);
            continue;
        }
        for (uint32_t load = 0; load < step.wordOrLoads; ++load) {
            static_cast<void>(*word);
        }
    }
    tell("ends");
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    try {
        if (words.size() == 4 && words[0] == "record") {
            record(words[1], words[2], words[3]);
        } else if (words.size() == 3 && words[0] == "updater") {
            update(words[1], words[2]);
        } else if (words.size() == 3 && words[0] == "bare") {
            makeBareAccesses(words[1], words[2]);
        } else {
            std::fputs("usage: bus_cost record|updater|bare ...\n", stderr);
            return 2;
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bus_cost: %s\n", error.what());
        return 1;
    }
    return 0;
}
