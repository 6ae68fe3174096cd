#include "simulator/machine/DefaultMachine.h"

namespace simulator {
namespace {

constexpr uint8_t kProtected = 3;  // as the updater leaves a PROM

void add(Machine& machine, const Board& board, char flavour, uint8_t version, uint16_t date,
         uint32_t identity) {
    const FpgaConfiguration configuration{.modelCode = board.modelCode,
                                          .boardRevision = board.revision,
                                          .flavour = flavour,
                                          .version = version,
                                          .date = date};
    machine.addCard(board, PromCells(encodeConfiguration(configuration), identity, kProtected));
}

}  // namespace

void addDefaultCards(Machine& machine) {
    add(machine, {"VornMX-B", "PCI slot 1", 0x21, 1}, 'M', 10, 0x4511, 0x21307015);
    add(machine, {"Vorn K40", "PCI slot 2", 0x23, 2}, 'W', 7, 0x5309, 0x234130CC);
    add(machine, {"Vorn DX8", "PCI slot 3", 0x24, 0}, 'W', 7, 0x4B17, 0x24529539);
    add(machine, {"Vorn DX8-XS", "PCI slot 4", 0x25, 0}, 'W', 2, 0x581E, PromCells::kErasedUserCode);
}

}  // namespace simulator
