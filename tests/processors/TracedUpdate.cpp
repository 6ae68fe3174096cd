// Reads every card of a simulated machine as the updater does, writes a firmware image to one of them if
// given one, and prints what it read and a digest of its register accesses. The machine stays switched on.
//
//   traced_update MACHINE [CARD IMAGE]

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>

#include "card/CardAccess.h"
#include "card/Registers.h"
#include "files/WholeFile.h"
#include "hw/ApplicationHooks.h"
#include "hw/PromOperations.h"
#include "simulator/host/SimulatedHost.h"
#include "simulator/storage/MachineDirectory.h"
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
    GetCardInformation(connection, name, location);
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

void run(const std::string& folder, int cardToWrite, const std::string& imageFile) {
    const auto directory =
        simulator::MachineDirectory::open(folder, simulator::MachineDirectory::OnOpening::powerUp);
    simulator::SimulatedHost machine(directory->machine(), {});
    PrintingHost host(machine);
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
        if (card == cardToWrite) {
            auto image = files::readFile(imageFile);
            const uint16_t error = ProgramConfigProm(image.data(), static_cast<uint32_t>(image.size()));
            std::printf("  written with error %u\n", unsigned{error});
        }
        CloseCard(connection);
    }
    host.print();
    directory->save();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 && argc != 4) {
        std::fputs("usage: traced_update MACHINE [CARD IMAGE]\n", stderr);
        return 2;
    }
    try {
        run(argv[1], argc == 4 ? std::atoi(argv[2]) : 0, argc == 4 ? argv[3] : "");
    } catch (const std::exception& error) {
        std::fprintf(stderr, "traced_update: %s\n", error.what());
        return 1;
    }
    return 0;
}
