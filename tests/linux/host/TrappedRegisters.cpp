#include "tests/linux/host/TrappedRegisters.h"

#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace {

TrappedRegisters* gTrap = nullptr;

std::size_t pageBytes() {
    return static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
}

}  // namespace

TrappedRegisters::TrappedRegisters(Host& bus) : bus_(bus) {
    gTrap = this;
    struct sigaction action {};
    action.sa_sigaction = onFault;
    action.sa_flags = SA_SIGINFO;
    ::sigaction(SIGSEGV, &action, nullptr);
}

TrappedRegisters::~TrappedRegisters() {
    std::signal(SIGSEGV, SIG_DFL);
    gTrap = nullptr;
}

void TrappedRegisters::watch(uint8_t* page, uint32_t offsetInPage, uint32_t bytes, void* words) {
    page_ = page;
    offsetInPage_ = offsetInPage;
    bytes_ = bytes;
    words_ = static_cast<uint8_t*>(words);
    if (::mprotect(page_, pageBytes(), PROT_NONE) != 0) {
        throw std::runtime_error("The page could not be made inaccessible.");
    }
}

void TrappedRegisters::onFault(int /*signal*/, siginfo_t* information, void* context) {
    if (!gTrap->answer(information->si_addr, context)) {
        std::signal(SIGSEGV, SIG_DFL);  // the instruction faults again
    }
}

bool TrappedRegisters::answer(void* address, void* context) {
    auto* const byte = static_cast<uint8_t*>(address);
    if (byte < page_ || byte >= page_ + pageBytes()) {
        return false;
    }
    // Before the window it wraps around, and is too large.
    const std::size_t offset = static_cast<std::size_t>(byte - page_) - offsetInPage_;
    if (words_ != nullptr && offset < bytes_ && offset % 4 == 0 &&
        move(reinterpret_cast<uint32_t*>(words_ + offset), context)) {
        return true;
    }
    ++strays_;
    return ::mprotect(page_, pageBytes(), PROT_READ | PROT_WRITE) == 0;
}

#ifdef __x86_64__

bool TrappedRegisters::move(uint32_t* word, void* context) {
    constexpr std::array kRegisters = {REG_RAX, REG_RCX, REG_RDX, REG_RBX, REG_RSP, REG_RBP,
                                       REG_RSI, REG_RDI, REG_R8,  REG_R9,  REG_R10, REG_R11,
                                       REG_R12, REG_R13, REG_R14, REG_R15};
    constexpr uint8_t kLoad = 0x8B;
    constexpr uint8_t kStore = 0x89;
    auto& registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    // The kernel gives the instruction's address as a number.
    const auto* next =
        reinterpret_cast<const uint8_t*>(registers[REG_RIP]);  // NOLINT(performance-no-int-to-ptr)
    const unsigned prefix = (*next & 0xF0) == 0x40 ? *next++ : 0;
    const bool isWide = (prefix & 8) != 0;
    const uint8_t operation = *next++;
    const unsigned operands = *next++;
    // How the address is formed does not matter, only how many bytes tell it.
    const unsigned mode = operands >> 6;
    const bool hasIndex = (operands & 7) == 4;
    next += (hasIndex ? 1 : 0) + (mode == 1 ? 1 : 0) + (mode == 2 ? 4 : 0);
    if (isWide || mode == 3 || (operation != kLoad && operation != kStore)) {
        return false;
    }
    greg_t& value = registers[kRegisters[(prefix & 4) << 1 | (operands >> 3 & 7)]];
    if (operation == kLoad) {
        value = __builtin_bswap32(bus_.loadWord(word));
    } else {
        bus_.storeWord(word, __builtin_bswap32(static_cast<uint32_t>(value)));
    }
    registers[REG_RIP] = reinterpret_cast<greg_t>(next);
    return true;
}

#else

bool TrappedRegisters::move(uint32_t* /*word*/, void* /*context*/) {
    return false;
}

#endif
