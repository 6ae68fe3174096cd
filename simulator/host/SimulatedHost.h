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
    // Asks whoever sits at the machine for the administrator's right; true when it is granted.
    using AdministratorPrompt = std::function<bool()>;

    // The machine must outlive the host. The bundle's folder may be empty: then there is no bundle. Without a
    // prompt there is nobody to grant the administrator's right.
    SimulatedHost(Machine& machine, std::filesystem::path bundleDirectory, AdministratorPrompt prompt = {});

    std::filesystem::path bundleDirectory() override { return bundleDirectory_; }
    // A card publishes its service when its FPGA found its configuration at power-up and a driver is there
    // for it. When the card vanishes from the bus, its service stays until nobody has it open.
    std::vector<uint64_t> servicesOfClass(std::string_view className) override;
    std::optional<uint32_t> openService(uint64_t service) override;
    bool closeConnection(uint32_t connection) override;
    std::optional<MappedRange> mapMemory(uint32_t connection, uint32_t memoryType) override;
    // Refuses every method but the one of platform/CardDriver.h, and a reply without room for all of it.
    std::optional<std::size_t> callMethod(uint32_t connection, uint32_t method,
                                          std::span<uint8_t> reply) override;
    // Outside the live windows loads return all ones, stores are lost, and both go into the ledger.
    uint32_t loadWord(const uint32_t* address) override;
    void storeWord(uint32_t* address, uint32_t word) override;
    std::vector<Process> processes() override { return machine_.processes(); }
    bool deliverShutDownEvent(uint64_t processSerialNumber) override;
    RightAnswer askForAdministratorRight() override;
    bool runPrivilegedTool(const std::string& tool, const std::vector<std::string>& arguments) override;
    // The drivers notice, and nobody has to wait: the machine's clock counts accesses.
    void sleepSeconds(uint32_t seconds) override { machine_.drivers().letPass(seconds); }

    // Call when the program has finished, while this host or one in front of it is still installed. Whatever
    // the program was given and has not given back goes into the ledger: windows, services, iterators,
    // authorizations, descriptors, objects of its bundle, privileged tools not waited for. Connections
    // without a window are not looked at; openConnections counts them. An authorization may stay for as long
    // as a driver that was loaded does, and goes with the power.
    void programEnded();

    // What has been opened and not closed, and mapped and not taken away.
    std::size_t openConnections() const { return connections_.size(); }
    std::size_t liveMappings() const;

  private:
    struct Mapping {
        uint32_t connection;
        bool live;
        Card* card;
        uint32_t memoryType;
        RegisterWindow* window;
        // Kept after the mapping has gone, so that its addresses are not handed out again.
        AddressSpace space;
    };

    // A mapping as loads and stores need it.
    struct View {
        uintptr_t base = 0;
        std::size_t count = 0;
        const uint32_t* words = nullptr;
        Card* registersOf = nullptr;  // the card, when stores go to its registers

        // Which word of the window lies at an address; `count` or more when none does. The rotation takes the
        // two bits that an aligned offset has clear to the top, where they make any other one too large.
        std::size_t indexOf(const void* address) const {
            return std::rotr(reinterpret_cast<uintptr_t>(address) - base, 2);
        }
    };

    bool isOpen(const Card& card) const;
    // Takes away what was opened through a driver that has gone.
    void closeOrphanedConnections();
    // Makes the live mapping at an address the current view; false, with a note in the ledger, when there is
    // none.
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
