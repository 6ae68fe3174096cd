#include "tests/linux/host/TrappedRegisters.h"

#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace {

TrappedRegisters* gTrap = nullptr;

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

void TrappedRegisters::watch(const Host::MappedRange& window, void* words) {
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    auto* const base = static_cast<uint8_t*>(window.base);
    const std::size_t inPage = reinterpret_cast<uintptr_t>(base) % page;
    window_ = window;
    pages_ = base - inPage;
    pagesBytes_ = (inPage + window.bytes + page - 1) / page * page;
    words_ = static_cast<uint8_t*>(words);
    if (::mprotect(pages_, pagesBytes_, PROT_NONE) != 0) {
        throw std::runtime_error("The window's pages could not be made inaccessible.");
    }
}

void TrappedRegisters::onFault(int /*signal*/, siginfo_t* information, void* context) {
    if (!gTrap->answer(information->si_addr, context)) {
        std::signal(SIGSEGV, SIG_DFL);  // the instruction faults again
    }
}

bool TrappedRegisters::answer(void* address, void* context) {
    auto* const byte = static_cast<uint8_t*>(address);
    if (byte < pages_ || byte >= pages_ + pagesBytes_) {
        return false;
    }
    const auto offset = static_cast<std::size_t>(byte - static_cast<uint8_t*>(window_.base));
    if (words_ != nullptr && offset < window_.bytes && offset % 4 == 0 &&
        move(reinterpret_cast<uint32_t*>(words_ + offset), context)) {
        return true;
    }
    ++strays_;
    return ::mprotect(pages_, pagesBytes_, PROT_READ | PROT_WRITE) == 0;
}

#ifdef __x86_64__

bool TrappedRegisters::isPossible() {
    return true;
}

bool TrappedRegisters::move(uint32_t* word, void* context) {
    constexpr std::array kRegisters = {REG_RAX, REG_RCX, REG_RDX, REG_RBX, REG_RSP, REG_RBP,
                                       REG_RSI, REG_RDI, REG_R8,  REG_R9,  REG_R10, REG_R11,
                                       REG_R12, REG_R13, REG_R14, REG_R15};
    constexpr uint8_t kLoad = 0x8B;
    constexpr uint8_t kStore = 0x89;
    auto& registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    const auto* next = reinterpret_cast<const uint8_t*>(registers[REG_RIP]);
    const unsigned prefix = (*next & 0xF0) == 0x40 ? *next++ : 0;
    const bool isWide = (prefix & 8) != 0;
    const uint8_t operation = *next++;
    const unsigned operands = *next++;
    // Only with a plain register as the address.
    const bool isPlain = operands >> 6 == 0 && (operands & 7) != 4 && (operands & 7) != 5;
    if (isWide || !isPlain || (operation != kLoad && operation != kStore)) {
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

bool TrappedRegisters::isPossible() {
    return false;
}

bool TrappedRegisters::move(uint32_t* /*word*/, void* /*context*/) {
    return false;
}

#endif
