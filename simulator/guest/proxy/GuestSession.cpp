#include "simulator/guest/proxy/GuestSession.h"

#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <utility>

#include "files/UserError.h"

namespace simulator {
namespace {

// What the emulator gives a guest by default.
constexpr const char* kUsualMemory = "128M";

bool isDecimal(const std::string& text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

// The size in an argument of -m, such as "512", "size=1G" or "1G,slots=2". Without a unit, it is mebibytes.
std::string memorySize(std::string argument) {
    argument = argument.substr(0, argument.find(','));
    const std::string key = "size=";
    argument = argument.starts_with(key) ? argument.substr(key.size()) : argument;
    return isDecimal(argument) ? argument + 'M' : argument;
}

// Adds the memory that the cards need to a command line for QEMU, unless it says itself what the guest's
// memory is.
void addSharedMemory(std::vector<std::string>& command) {
    const auto saysItself = [](const std::string& word) {
        return word.find("memory-backend") != std::string::npos;
    };
    if (std::ranges::any_of(command, saysItself)) {
        return;
    }
    std::string size = kUsualMemory;
    for (std::size_t index = 0; index + 1 < command.size(); ++index) {
        if (command[index] == "-m" || command[index] == "--m") {
            size = memorySize(command[index + 1]);
        }
    }
    command.insert(command.end(),
                   {"-object", "memory-backend-memfd,id=shared-with-cards,share=on,size=" + size, "-machine",
                    "memory-backend=shared-with-cards"});
}

// Keeps signals from ending this process, and makes them readable instead.
class CaughtSignals {
  public:
    CaughtSignals() {
        std::signal(SIGCHLD, SIG_DFL);  // whoever started this program may have left it ignored
        sigset_t set;
        sigemptyset(&set);
        for (const int number : {SIGCHLD, SIGINT, SIGTERM, SIGHUP}) {
            sigaddset(&set, number);
        }
        ::sigprocmask(SIG_BLOCK, &set, &before_);
        descriptor_ = ::signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
        if (descriptor_ == -1) {
            const int error = errno;
            ::sigprocmask(SIG_SETMASK, &before_, nullptr);
            throw files::UserError(std::string("Signals cannot be caught (") + std::strerror(error) + ").");
        }
    }
    CaughtSignals(const CaughtSignals&) = delete;
    CaughtSignals& operator=(const CaughtSignals&) = delete;
    ~CaughtSignals() {
        ::close(descriptor_);
        ::sigprocmask(SIG_SETMASK, &before_, nullptr);
    }

    int descriptor() const { return descriptor_; }

  private:
    sigset_t before_{};
    int descriptor_ = -1;
};

}  // namespace

GuestSession::GuestSession(Machine& machine, const PciFunction& function) : machine_(machine) {
    for (std::size_t index = 0; index < machine.cardCount(); ++index) {
        Card& card = machine.card(index);
        if (card.running() && !card.faults().hasStruck(FaultKind::cardVanished)) {
            seats_.push_back(std::make_unique<Seat>(index + 1, machine, card, function));
        }
    }
}

void GuestSession::addTo(std::vector<std::string>& command) const {
    for (const auto& seat : seats_) {
        command.insert(command.end(),
                       {"-device", "x-pci-proxy-dev,id=card-" + std::to_string(seat->cardNumber) +
                                       ",fd=" + std::to_string(seat->connection.emulatorsEnd())});
    }
}

int GuestSession::run(std::vector<std::string> command) {
    addSharedMemory(command);
    addTo(command);
    std::vector<int> inherited;
    for (const auto& seat : seats_) {
        inherited.push_back(seat->connection.emulatorsEnd());
    }
    const CaughtSignals signals;
    Emulator emulator(std::move(command), inherited);
    for (const auto& seat : seats_) {
        seat->connection.closeEmulatorsEnd();
    }
    return serve(emulator, signals.descriptor());
}

int GuestSession::serve(Emulator& emulator, int signals) {
    std::vector<pollfd> waitedFor{{.fd = signals, .events = POLLIN, .revents = 0}};
    for (const auto& seat : seats_) {
        waitedFor.push_back({.fd = seat->connection.descriptor(), .events = POLLIN, .revents = 0});
    }
    bool hasAsked = false;
    while (!emulator.exitCode()) {
        if (::poll(waitedFor.data(), waitedFor.size(), -1) < 0) {
            continue;  // interrupted
        }
        passSignalsOn(emulator, signals, hasAsked);
        for (std::size_t index = 0; index < seats_.size() && machine_.isOn(); ++index) {
            pollfd& its = waitedFor[index + 1];
            if (its.revents != 0 && !seats_[index]->connection.serve()) {
                its.fd = -1;  // closed by the emulator, which is about to end
            }
        }
        if (!machine_.isOn()) {
            emulator.signal(SIGKILL);
            waitedFor.resize(1);
        }
    }
    return *emulator.exitCode();
}

void GuestSession::passSignalsOn(const Emulator& emulator, int signals, bool& hasAsked) {
    signalfd_siginfo received{};
    while (::read(signals, &received, sizeof(received)) == sizeof(received)) {
        if (received.ssi_signo != SIGCHLD) {
            emulator.signal(std::exchange(hasAsked, true) ? SIGKILL : SIGTERM);
        }
    }
}

std::string GuestSession::report() const {
    std::string lines;
    for (const auto& seat : seats_) {
        lines += "Card " + std::to_string(seat->cardNumber) + ": " + seat->device.accesses().text() + ".\n";
    }
    return lines;
}

}  // namespace simulator
