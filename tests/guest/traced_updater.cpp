// The updater's window on a simulated machine; at its end, says on standard error how each card's registers
// were accessed. The environment names the bundle.
//
//   BUNDLE=FOLDER traced_updater MACHINE

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <map>

#include "app/UpdaterMain.h"
#include "app/hosts/HostProcess.h"
#include "framework/widgets/UDisplay.h"
#include "platform/CardDriver.h"
#include "simulator/base/AccessDigest.h"
#include "simulator/host/SimulatedHost.h"
#include "simulator/storage/MachineDirectory.h"
#include "tests/support/ForwardingHost.h"

namespace {

constexpr int kNoDisplay = 4;

class CardTracingHost final : public ForwardingHost {
  public:
    using ForwardingHost::ForwardingHost;

    std::optional<uint32_t> openService(uint64_t service) override {
        const auto connection = ForwardingHost::openService(service);
        if (connection) {
            connections_[*connection] = &cards_[service];
        }
        return connection;
    }
    std::optional<MappedRange> mapMemory(uint32_t connection, uint32_t memoryType) override {
        const auto range = ForwardingHost::mapMemory(connection, memoryType);
        if (range && memoryType == 0) {
            card_ = connections_.at(connection);
        }
        return range;
    }
    uint32_t loadWord(const uint32_t* address) override {
        const uint32_t word = ForwardingHost::loadWord(address);
        card_->addLoad(offsetOf(address), word);
        return word;
    }
    void storeWord(uint32_t* address, uint32_t word) override {
        card_->addStore(offsetOf(address), word);
        ForwardingHost::storeWord(address, word);
    }
    void report() const {
        int number = 0;
        for (const auto& [service, accesses] : cards_) {
            std::fprintf(stderr, "Card %d: %s\n", ++number, accesses.text().c_str());
        }
    }

  private:
    std::map<uint64_t, simulator::AccessDigest> cards_;  // by service, which is their order
    std::map<uint32_t, simulator::AccessDigest*> connections_;
    // Whose registers were mapped last: the updater maps one card's at a time.
    simulator::AccessDigest* card_ = nullptr;
};

int run(const char* folder, const char* bundle) {
    const auto directory =
        simulator::MachineDirectory::open(folder, simulator::MachineDirectory::OnOpening::powerUp);
    simulator::SimulatedHost machine(directory->machine(), bundle);
    CardTracingHost host(machine);
    const int code = UpdaterMain();
    host.report();
    directory->save();
    return code;
}

}  // namespace

int main(int argc, char** argv) {
    const char* const bundle = std::getenv("BUNDLE");
    if (argc != 2 || bundle == nullptr) {
        std::fputs("usage: BUNDLE=FOLDER traced_updater MACHINE\n", stderr);
        return 2;
    }
    SetUpProcess();
    try {
        UDisplay::Open("traced_updater", kNoDisplay);
        return run(argv[1], bundle);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "traced_updater: %s\n", error.what());
        return 1;
    }
}
