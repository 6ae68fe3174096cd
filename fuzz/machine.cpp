// Any bytes as machine.json and PROM files. The input is the text of machine.json and, after a NUL, the first
// bytes of the cards' PROMs, which otherwise hold firmware for their boards.

#include <algorithm>
#include <string_view>

#include "files/UserError.h"
#include "fuzz/Require.h"
#include "platform/CardDriver.h"
#include "simulator/host/SimulatedHost.h"
#include "simulator/storage/StoredMachine.h"

namespace {

using namespace simulator;

// More cards find nothing new, and each takes a quarter of a megabyte.
constexpr std::size_t kMostCards = 3;

PromCells cellsOf(const StoredMachine::Card& card, std::string_view content) {
    const FpgaConfiguration firmware{.modelCode = card.board.modelCode,
                                     .boardRevision = card.board.revision,
                                     .flavour = 'W',
                                     .version = 1,
                                     .date = 0};
    std::vector<uint8_t> pages = encodeConfiguration(firmware);
    std::copy_n(content.begin(), std::min(content.size(), pages.size()), pages.begin());
    return {pages, 0x21307015, PromCells::kProtectionMask};
}

// Opens, reads and writes every card as a driver does.
void use(Machine& machine) {
    SimulatedHost host(machine, {});
    for (const uint64_t service : host.servicesOfClass(card_driver::kServiceClass)) {
        const auto connection = host.openService(service);
        const auto range = connection ? host.mapMemory(*connection, 0) : std::nullopt;
        if (!range) {
            continue;
        }
        auto* const words = static_cast<uint32_t*>(range->base);
        for (uint32_t step = 0; step < 64; ++step) {
            host.storeWord(words + registers::kJtagOutput / 4, step % 2 == 0 ? 0x60606060 : 0x20202020);
            (void)host.loadWord(words + registers::kJtagInput / 4);
        }
        host.closeConnection(*connection);
    }
}

void requireSameAfterStoring(const StoredMachine& machine) {
    const std::string text = encodeMachine(machine);
    require(encodeMachine(decodeMachine(text)) == text, "a stored machine reads back as the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t end = std::min(input.find('\0'), size);
    StoredMachine stored;
    try {
        stored = decodeMachine(input.substr(0, end));
    } catch (const files::UserError& error) {
        require(std::string_view(error.what()).ends_with('.'), "an error message is a sentence");
        return 0;
    }
    requireSameAfterStoring(stored);
    if (stored.cards.size() > kMostCards) {
        return 0;
    }

    const std::string_view content = input.substr(std::min(end + 1, size));
    Machine machine;
    restoreMachine(
        machine, stored, [content](const StoredMachine::Card& card) { return cellsOf(card, content); },
        [](Card&, const StoredMachine::Card&) {});
    const auto nameFiles = [&](StoredMachine described) {
        for (std::size_t index = 0; index < described.cards.size(); ++index) {
            described.cards[index].promFile = stored.cards[index].promFile;
        }
        return described;
    };
    use(machine);
    requireSameAfterStoring(nameFiles(describeMachine(machine)));
    machine.powerOff();
    machine.powerOn();
    use(machine);
    requireSameAfterStoring(nameFiles(describeMachine(machine)));
    return 0;
}
