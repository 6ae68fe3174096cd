// Reads every card as the updater does, writes a firmware image to one of them if given one, and prints what
// it read and a digest of its register accesses. The cards are a simulated machine's, which stays switched
// on, or those on this computer's bus that a file of rules names.
//
//   traced_update MACHINE [CARD IMAGE]
//   traced_update --rules FILE [CARD IMAGE]

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "card/CardAccess.h"
#include "card/Registers.h"
#include "files/WholeFile.h"
#include "hw/ApplicationHooks.h"
#include "hw/PromOperations.h"
#include "linux/host/LinuxHost.h"
#include "linux/pci/CardRules.h"
#include "simulator/host/SimulatedHost.h"
#include "simulator/storage/MachineDirectory.h"
#include "tests/support/LocalAgent.h"
#include "tests/support/TracingHost.h"

uint32_t gSerialNumber = 0;
void AllowNextEvent() {}
void UpdateProgressBar(uint32_t /*bytes*/) {}
bool ShowAlert(const char* title, const char* message) {
    std::printf("  alert: %s: %s\n", title, message);
    return true;
}

namespace {

class PrintingHost final : public TracingHost {
  public:
    using TracingHost::TracingHost;
    void print() const { std::printf("%s\n", summary().c_str()); }

  private:
    void madeManyAccesses() override { print(); }
};

void lookAtOpenCard(uint32_t connection) {
    char name[kCardTextBytes] = "";
    char location[kCardTextBytes] = "";
    if (GetCardInformation(connection, name, location) == 0) {
        throw std::runtime_error("A card could not be described.");
    }
    std::printf("%s in %s\n  registers:", name, location);
    gbSwap = 0;
    gbSwap = (MacReadULONG(RegisterAt(kByteSwapIDRegister)) & 0xFFFF) == kByteSwapID ? 0 : 1;
    for (const uint32_t offset : {kByteSwapIDRegister, kDeviceIDRegister, kBoardRevisionRegister,
                                  kFirmwareVersionRegister, kFirmwareDateRegister}) {
        std::printf(" %08x", unsigned{MacReadULONG(RegisterAt(offset))});
    }
    gSerialNumber = 0;
    const uint16_t error = GetSerialNumber(&gSerialNumber);
    std::printf("%s\n  identity: %08x, error %u\n", gbSwap != 0 ? ", swapped" : "", unsigned{gSerialNumber},
                unsigned{error});
}

struct Arguments {
    std::string place;  // the machine's folder, or the file of rules
    int cardToWrite = 0;
    std::string image;
};

void work(PrintingHost& host, const Arguments& arguments) {
    const int cards = static_cast<int>(GetNumberOfCardsInstalled());
    for (int card = 1; card <= cards; ++card) {
        void* base = nullptr;
        uint32_t bytes = 0;
        const uint32_t connection = OpenCard(card - 1, &base, &bytes, nullptr, nullptr);
        if (connection == 0) {
            throw std::runtime_error("Card " + std::to_string(card) + " could not be opened.");
        }
        gpRegisters = static_cast<uint32_t*>(base);
        lookAtOpenCard(connection);
        if (card == arguments.cardToWrite) {
            auto image = files::readFile(arguments.image);
            const uint16_t error = ProgramConfigProm(image.data(), static_cast<uint32_t>(image.size()));
            std::printf("  written with error %u\n", unsigned{error});
        }
        CloseCard(connection);
    }
    host.print();
}

void runOnMachine(const Arguments& arguments) {
    const auto directory =
        simulator::MachineDirectory::open(arguments.place, simulator::MachineDirectory::OnOpening::powerUp);
    simulator::SimulatedHost machine(directory->machine(), {});
    PrintingHost host(machine);
    work(host, arguments);
    directory->save();
}

void runOnThisComputer(const Arguments& arguments) {
    const auto text = files::readFile(arguments.place);
    pci::CardRules rules;
    pci::parseCardRules({reinterpret_cast<const char*>(text.data()), text.size()}, arguments.place, rules);
    LocalAgent agent("/sys", std::move(rules));
    host::LinuxHost computer(agent, {});
    PrintingHost host(computer);
    if (GetNumberOfCardsInstalled() == 0) {
        host.askForAdministratorRight();  // which says why
    }
    work(host, arguments);
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> words(argv + 1, argv + argc);
    const bool onThisComputer = !words.empty() && words.front() == "--rules";
    if (onThisComputer) {
        words.erase(words.begin());
    }
    if (words.size() != 1 && words.size() != 3) {
        std::fputs("usage: traced_update MACHINE|--rules FILE [CARD IMAGE]\n", stderr);
        return 2;
    }
    Arguments arguments{.place = words[0], .cardToWrite = 0, .image = ""};
    if (words.size() == 3) {
        arguments.cardToWrite = std::atoi(words[1].c_str());
        arguments.image = words[2];
    }
    try {
        onThisComputer ? runOnThisComputer(arguments) : runOnMachine(arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "traced_update: %s\n", error.what());
        return 1;
    }
    return 0;
}
