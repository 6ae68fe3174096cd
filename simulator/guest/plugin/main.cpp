// A plugin for QEMU that puts the cards of a simulated machine on the bus of a guest computer. To QEMU each
// card is an ivshmem-plain device, whose registers are a file that QEMU and the plugin share; scripts and
// tests/guest give the whole command line.
//
//   -plugin guest_cards.so,machine=FOLDER,memory=FOLDER[,nanoseconds=NUMBER]
//
// With nanoseconds, an access to a card takes about that much more processor time, since a real bus is far
// slower than shared memory. The guest has one processor, and its programs are seen, not its kernel, which
// does not use the cards. Calling back after an access costs far more than the access, so nothing is called
// for a program's own stack and static data.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <exception>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "files/UserError.h"
#include "simulator/guest/plugin/GuestBus.h"
#include "simulator/guest/plugin/OwnMemory.h"
#include "simulator/guest/plugin/PluginInterface.h"

int qemu_plugin_version = kQemuPluginVersion;

namespace {

// Never destroyed: the emulator's exit calls back after the module's static objects have been.
simulator::GuestBus* bus = nullptr;
uint64_t turnsOfAnAccess = 0;

// The kernel's addresses are above these, and while it is being loaded everything is below. A program maps
// nothing there, and looking up an address is expensive.
constexpr uint64_t kLeastAddress = uint64_t{1} << 32;
constexpr uint64_t kMostAddress = (uint64_t{1} << 47) - 1;

// Takes time as waiting for a bus does. Few branches, because a waiting processor executes none, and many
// would displace the program's own from the branch predictor. Nothing that comes after begins before the end.
void spend(uint64_t turns) {
    if (turns == 0) {
        return;
    }
    uint64_t product = 1;
    for (uint64_t turn = 0; turn < turns; ++turn) {
        __asm__ volatile(".rept 20; imul %0, %0; .endr" : "+r"(product));
    }
    __asm__ volatile("lfence" ::: "memory");
}

// How often spend() turns in that time. The clock is not asked later: an access that ends at a time is
// cheaper on a computer that is busy with something else.
uint64_t turnsIn(std::chrono::nanoseconds time) {
    using std::chrono::steady_clock;
    constexpr uint64_t kTurns = 100'000;
    auto least = steady_clock::duration::max();
    for (int attempt = 0; attempt < 100; ++attempt) {
        const auto start = steady_clock::now();
        spend(kTurns);
        least = std::min(least, steady_clock::now() - start);
    }
    return static_cast<uint64_t>(kTurns * time / least);
}

// What is known of a page of a program's addresses. It holds until the kernel runs again, which alone could
// make the page lead elsewhere. Looking it up again would take most of the emulator's time.
struct KnownPage {
    uint64_t number = 0;
    uint64_t kernelBlocks = 0;
    simulator::GuestCard* card = nullptr;
};
std::array<KnownPage, 1024> knownPages;
uint64_t kernelBlocks = 1;  // how many of the kernel's blocks have run

KnownPage& pageOf(uint64_t number) {
    return knownPages[number % knownPages.size()];
}

bool isKnown(const KnownPage& page, uint64_t number) {
    return page.number == number && page.kernelBlocks == kernelBlocks;
}

// Whether nothing that a program accesses there is a card's. True of nearly every access but the cards' own.
bool isKnownToBeNoCard(uint64_t address) {
    const uint64_t number = address / simulator::CardMemory::kBytes;
    const KnownPage& page = pageOf(number);
    return isKnown(page, number) && page.card == nullptr;
}

simulator::GuestCard* cardAt(uint64_t address, uint32_t access, simulator::GuestAccess way) {
    const uint64_t number = address / simulator::CardMemory::kBytes;
    KnownPage& page = pageOf(number);
    if (isKnown(page, number)) {
        return page.card;
    }
    const qemu_plugin_hwaddr* const there = qemu_plugin_get_hwaddr(access, address);
    simulator::GuestCard* const card = there == nullptr || qemu_plugin_hwaddr_is_io(there)
                                           ? nullptr
                                           : bus->cardAt(qemu_plugin_hwaddr_phys_addr(there), way);
    if (card != nullptr || bus->knowsAll()) {
        page = {number, kernelBlocks, card};
    }
    return card;
}

// Apart from onAccess, which would otherwise save registers that it seldom needs.
[[gnu::noinline]] void carryOut(uint32_t access, uint64_t address) {
    if (address < kLeastAddress || address > kMostAddress) {
        return;
    }
    const auto way =
        qemu_plugin_mem_is_store(access) ? simulator::GuestAccess::store : simulator::GuestAccess::load;
    if (simulator::GuestCard* const card = cardAt(address, access, way)) {
        bus->accessed(*card, static_cast<uint32_t>(address % simulator::CardMemory::kBytes),
                      1U << qemu_plugin_mem_size_shift(access), way);
        spend(turnsOfAnAccess);
    }
}

void onAccess(unsigned /*processor*/, uint32_t access, uint64_t address, void* /*data*/) {
    if (!isKnownToBeNoCard(address)) {
        carryOut(access, address);
    }
}

std::span<const uint8_t> bytesOf(const qemu_plugin_insn* instruction) {
    return {static_cast<const uint8_t*>(qemu_plugin_insn_data(instruction)),
            qemu_plugin_insn_size(instruction)};
}

void onTranslation(uint64_t /*plugin*/, qemu_plugin_tb* block) {
    if (qemu_plugin_tb_vaddr(block) > kMostAddress) {
        qemu_plugin_register_vcpu_tb_exec_inline(block, QEMU_PLUGIN_INLINE_ADD_U64, &kernelBlocks, 1);
        return;
    }
    for (std::size_t index = 0; index < qemu_plugin_tb_n_insns(block); ++index) {
        qemu_plugin_insn* const instruction = qemu_plugin_tb_get_insn(block, index);
        if (!simulator::accessesOnlyOwnMemory(bytesOf(instruction))) {
            qemu_plugin_register_vcpu_mem_cb(instruction, onAccess, QEMU_PLUGIN_CB_NO_REGS,
                                             QEMU_PLUGIN_MEM_RW, nullptr);
        }
    }
}

void onExit(uint64_t /*plugin*/, void* /*data*/) {
    try {
        bus->switchOff();
        std::fputs(bus->report().c_str(), stderr);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
}

std::map<std::string, std::string, std::less<>> optionsIn(int count, char** arguments) {
    std::map<std::string, std::string, std::less<>> options{
        {"machine", ""}, {"memory", ""}, {"nanoseconds", "0"}};
    for (int index = 0; index < count; ++index) {
        const std::string_view argument = arguments[index];
        const std::size_t end = argument.find('=');
        const auto option = options.find(argument.substr(0, end));
        if (end == std::string_view::npos || option == options.end()) {
            throw files::UserError("The cards have no option \"" + std::string(argument) + "\".");
        }
        option->second = argument.substr(end + 1);
    }
    return options;
}

}  // namespace

int qemu_plugin_install(uint64_t plugin, const qemu_info_t* /*emulated*/, int count, char** arguments) {
    try {
        const auto options = optionsIn(count, arguments);
        bus = new simulator::GuestBus(options.at("machine"), options.at("memory"));
        turnsOfAnAccess = turnsIn(std::chrono::nanoseconds(std::stoul(options.at("nanoseconds"))));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    qemu_plugin_register_vcpu_tb_trans_cb(plugin, onTranslation);
    qemu_plugin_register_atexit_cb(plugin, onExit, nullptr);
    return 0;
}
