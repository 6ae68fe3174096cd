// The updater on this computer's cards, for a made-up card whose registers are a file: a simulated card
// answers every access to them, so that a write can succeed.

#include <sys/mman.h>

#include "platform/CardDriver.h"
#include "simulator/host/SimulatedHost.h"
#include "simulator/machine/DefaultMachine.h"
#include "tests/linux/host/TrappedRegisters.h"

namespace {

class SimulatedCard {
  public:
    SimulatedCard() {
        simulator::addDefaultCards(machine_);
        machine_.powerOn();
        const auto services = host_.servicesOfClass(card_driver::kServiceClass);
        words_ = host_.mapMemory(host_.openService(services.front()).value(), 0).value().base;
    }
    void answerIn(void* page) {
        constexpr uint32_t kOffsetInPage = 0x200;  // as the test's card has it
        constexpr uint32_t kBytes = 0x200;
        trap_.watch(static_cast<uint8_t*>(page), kOffsetInPage, kBytes, words_);
    }

  private:
    simulator::Machine machine_;
    simulator::SimulatedHost host_{machine_, {}};
    TrappedRegisters trap_{host_};
    void* words_ = nullptr;
};

}  // namespace

// The linker gives these names to the function and to what this program calls instead.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" void* __real_mmap(void* place, size_t bytes, int protection, int flags, int file, off_t offset);
extern "C" void* __wrap_mmap(void* place, size_t bytes, int protection, int flags, int file, off_t offset) {
    void* const pages = __real_mmap(place, bytes, protection, flags, file, offset);
    if (file >= 0 && pages != MAP_FAILED) {
        static SimulatedCard card;
        card.answerIn(pages);
    }
    return pages;
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
