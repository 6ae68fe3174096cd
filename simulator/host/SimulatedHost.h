#pragma once

// A simulated machine as the host of this process.

#include <bit>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>

#include "platform/Host.h"
#include "simulator/host/AddressSpace.h"
#include "simulator/host/PrivilegedTools.h"
#include "simulator/machine/Machine.h"

namespace simulator {

class SimulatedHost final : public Host {
  public:
    // Asks the user for the administrator's right; true if it is granted.
    using AdministratorPrompt = std::function<bool()>;

    // The machine must outlive the host. An empty bundle folder means that there is no bundle. Without a
    // prompt, the request for the administrator's right is cancelled.
    SimulatedHost(Machine& machine, std::filesystem::path bundleDirectory, AdministratorPrompt prompt = {});

    std::filesystem::path bundleDirectory() override { return bundleDirectory_; }
    // A card publishes its service if its FPGA loaded a configuration at power-up and a driver is there. If
    // the card vanishes from the bus, its service stays as long as it is open.
    std::vector<uint64_t> servicesOfClass(std::string_view className) override;
    std::optional<uint32_t> openService(uint64_t service) override;
    bool closeConnection(uint32_t connection) override;
    std::optional<MappedRange> mapMemory(uint32_t connection, uint32_t memoryType) override;
    // Refuses any method but the one in platform/CardDriver.h, and a reply that is too small for it.
    std::optional<std::size_t> callMethod(uint32_t connection, uint32_t method,
                                          std::span<uint8_t> reply) override;
    // Outside the mapped windows, loads return all ones, stores are lost, and both go into the ledger.
    uint32_t loadWord(const uint32_t* address) override;
    void storeWord(uint32_t* address, uint32_t word) override;
    std::vector<Process> processes() override { return machine_.processes(); }
    bool deliverShutDownEvent(uint64_t processSerialNumber) override;
    RightAnswer askForAdministratorRight() override;
    bool runPrivilegedTool(const std::string& tool, const std::vector<std::string>& arguments) override;
    // Only drivers see this time pass. Nothing really waits, since the machine's clock counts accesses.
    void sleepSeconds(uint32_t seconds) override { machine_.drivers().letPass(seconds); }

    // Call when the program has finished, while this host or one in front of it is still installed. What the
    // program did not release goes into the ledger: windows, services, iterators, authorizations,
    // descriptors, objects of its bundle, and privileged tools not waited for. Connections without a window
    // do not count. An authorization may be kept as long as a driver is loaded, and ends with the power.
    void programEnded();

  private:
    struct Mapping {
        uint32_t connection;
        bool live;
        Card* card;
        uint32_t memoryType;
        RegisterWindow* window;
        // Kept after the mapping has ended, so that its addresses are not given out again.
        AddressSpace space;
    };

    // A mapping as loads and stores need it.
    struct View {
        uintptr_t base = 0;
        std::size_t count = 0;
        const uint32_t* words = nullptr;
        Card* registersOf = nullptr;  // the card, when stores go to its registers

        // The index of the word at an address; `count` or more if there is none. The rotation divides by four
        // and moves the two bits that are 0 in an aligned offset to the top, where any other value makes the
        // index too large. So a single comparison refuses unaligned addresses and those before or after the
        // window, in the function that an update calls most.
        std::size_t indexOf(const void* address) const {
            return std::rotr(reinterpret_cast<uintptr_t>(address) - base, 2);
        }
    };

    bool isOpen(const Card& card) const;
    std::size_t liveMappings() const;
    // Closes what was opened through a driver that has been unloaded.
    void closeOrphanedConnections();
    // Makes the mapping at an address the current view. If there is none, returns false and notes it in the
    // ledger.
    bool findView(const void* address);
    [[gnu::noinline]] uint32_t loadThroughAnotherView(const uint32_t* address);
    [[gnu::noinline]] uint32_t loadAfterWaking(std::size_t index);

    Machine& machine_;
    Clock& clock_;
    View view_;
    std::filesystem::path bundleDirectory_;
    AdministratorPrompt prompt_;
    PrivilegedTools tools_;
    std::map<uint32_t, Card*> connections_;
    std::deque<Mapping> mappings_;
    uint32_t nextConnection_;
};

}  // namespace simulator
