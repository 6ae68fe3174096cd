#include "simulator/machine/DefaultMachine.h"

#include "catalogue/CardModels.h"

namespace simulator {
namespace {

constexpr uint8_t kProtected = 3;  // as the updater leaves a PROM

// Date and identity are the words that the card keeps, so that the updater's reading of them is tested
// against numbers and not against their own encoding.
void add(Machine& machine, const char* name, const char* location, uint8_t boardRevision, char flavour,
         uint8_t version, uint16_t date, uint32_t identity) {
    const uint8_t modelCode = catalogue::modelByName(name)->code;
    const FpgaConfiguration configuration{.modelCode = modelCode,
                                          .boardRevision = boardRevision,
                                          .flavour = flavour,
                                          .version = version,
                                          .date = date};
    machine.addCard({name, location, modelCode, boardRevision},
                    PromCells(encodeConfiguration(configuration), identity, kProtected));
}

}  // namespace

void addDefaultCards(Machine& machine) {
    add(machine, "VornMX-B", "PCI slot 1", 1, 'M', 10, 0x4511, 0x21307015);
    add(machine, "Vorn K40", "PCI slot 2", 2, 'W', 7, 0x5309, 0x234130CC);
    add(machine, "Vorn DX8", "PCI slot 3", 0, 'W', 7, 0x4B17, 0x24529539);
    add(machine, "Vorn DX8-XS", "PCI slot 4", 0, 'W', 2, 0x581E, PromCells::kErasedUserCode);
}

}  // namespace simulator
