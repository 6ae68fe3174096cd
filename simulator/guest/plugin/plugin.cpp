// A plugin for QEMU that puts the cards of a simulated machine on the bus of a guest computer. To QEMU each
// card is an ivshmem-plain device, whose registers are a file that QEMU and the plugin share; scripts and
// tests/guest give the whole command line.
//
//   -plugin guest_cards.so,machine=FOLDER,memory=FOLDER[,nanoseconds=NUMBER]
//
// With nanoseconds, an access of a card takes at least that long, as on a real bus. The guest has one
// processor, and its programs are seen, not its kernel, which has no business with the cards.

#include <chrono>
#include <cstdio>
#include <exception>
#include <map>
#include <string>
#include <string_view>

#include "files/UserError.h"
#include "simulator/guest/GuestBus.h"
#include "simulator/guest/plugin/PluginInterface.h"

int qemu_plugin_version = kQemuPluginVersion;

namespace {

using std::chrono::steady_clock;

// Never destroyed: the emulator's exit calls back after the module's static objects have been.
simulator::GuestBus* bus = nullptr;
steady_clock::duration leastTime{};

// The kernel's addresses are above these, and while it is being loaded everything is below. A program maps
// nothing there, and to look up where an address leads is dear.
constexpr uint64_t kLeastAddress = uint64_t{1} << 32;
constexpr uint64_t kMostAddress = (uint64_t{1} << 47) - 1;

void waitUntil(steady_clock::time_point end) {
    while (steady_clock::now() < end) {
    }
}

void onAccess(unsigned /*processor*/, uint32_t access, uint64_t address, void* /*data*/) {
    if (address < kLeastAddress || address > kMostAddress) {
        return;
    }
    const qemu_plugin_hwaddr* const there = qemu_plugin_get_hwaddr(access, address);
    if (there == nullptr || qemu_plugin_hwaddr_is_io(there)) {
        return;
    }
    const bool isCard = bus->accessed(
        qemu_plugin_hwaddr_phys_addr(there), 1U << qemu_plugin_mem_size_shift(access),
        qemu_plugin_mem_is_store(access) ? simulator::GuestAccess::store : simulator::GuestAccess::load);
    if (isCard && leastTime != steady_clock::duration::zero()) {
        waitUntil(steady_clock::now() + leastTime);
    }
}

void onTranslation(uint64_t /*plugin*/, qemu_plugin_tb* block) {
    if (qemu_plugin_tb_vaddr(block) > kMostAddress) {
        return;
    }
    for (std::size_t index = 0; index < qemu_plugin_tb_n_insns(block); ++index) {
        qemu_plugin_register_vcpu_mem_cb(qemu_plugin_tb_get_insn(block, index), onAccess,
                                         QEMU_PLUGIN_CB_NO_REGS, QEMU_PLUGIN_MEM_RW, nullptr);
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
        leastTime = std::chrono::nanoseconds(std::stoul(options.at("nanoseconds")));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    qemu_plugin_register_vcpu_tb_trans_cb(plugin, onTranslation);
    qemu_plugin_register_atexit_cb(plugin, onExit, nullptr);
    return 0;
}
