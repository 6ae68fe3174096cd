#include "simulator/host/SimulatedHost.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/CardDriver.h"
#include "platform/LiveObjects.h"

namespace simulator {
namespace {

// Far from anything that could be a card's index.
constexpr uint64_t kFirstService = 0x1'0000'0001;
constexpr uint32_t kFirstConnection = 0x1'0001;

}  // namespace

SimulatedHost::SimulatedHost(Machine& machine, std::filesystem::path bundleDirectory,
                             AdministratorPrompt prompt)
    : machine_(machine),
      clock_(machine.clock()),
      bundleDirectory_(std::move(bundleDirectory)),
      prompt_(std::move(prompt)),
      tools_(machine.drivers()),
      nextConnection_(kFirstConnection) {}

std::vector<uint64_t> SimulatedHost::servicesOfClass(std::string_view className) {
    std::vector<uint64_t> services;
    if (!machine_.drivers().publishes(className)) {
        return services;
    }
    for (std::size_t index = 0; index < machine_.cardCount(); ++index) {
        const Card& card = machine_.card(index);
        if (card.running() && (!card.faults().hasStruck(FaultKind::cardVanished) || isOpen(card))) {
            services.push_back(kFirstService + index);
        }
    }
    return services;
}

std::optional<uint32_t> SimulatedHost::openService(uint64_t service) {
    const auto published = servicesOfClass(card_driver::kServiceClass);
    if (std::ranges::find(published, service) == published.end()) {
        return std::nullopt;
    }
    Card& card = machine_.card(static_cast<std::size_t>(service - kFirstService));
    if (card.faults().hasStruck(FaultKind::serviceNotOpened)) {
        return std::nullopt;
    }
    const uint32_t connection = nextConnection_++;
    connections_.emplace(connection, &card);
    return connection;
}

bool SimulatedHost::isOpen(const Card& card) const {
    return std::ranges::any_of(connections_, [&](const auto& entry) { return entry.second == &card; });
}

bool SimulatedHost::closeConnection(uint32_t connection) {
    if (connections_.erase(connection) == 0) {
        return false;
    }
    for (Mapping& mapping : mappings_) {
        if (mapping.connection == connection) {
            mapping.live = false;
        }
    }
    view_ = View{};
    return true;
}

std::optional<Host::MappedRange> SimulatedHost::mapMemory(uint32_t connection, uint32_t memoryType) {
    const auto found = connections_.find(connection);
    if (found == connections_.end()) {
        return std::nullopt;
    }
    Card* const card = found->second;
    RegisterWindow* const window = card->window(memoryType);
    if (!card->running() || window == nullptr || card->faults().hasStruck(FaultKind::serviceNotMapped)) {
        return std::nullopt;
    }
    mappings_.push_back(Mapping{.connection = connection,
                                .live = true,
                                .card = card,
                                .memoryType = memoryType,
                                .window = window,
                                .space = AddressSpace(window->bytes())});
    return MappedRange{mappings_.back().space.base(), window->bytes()};
}

std::optional<std::size_t> SimulatedHost::callMethod(uint32_t connection, uint32_t method,
                                                     std::span<uint8_t> reply) {
    const auto found = connections_.find(connection);
    if (found == connections_.end() || !found->second->running() ||
        method != card_driver::kInformationMethod || reply.size() < card_driver::kInformationBytes ||
        found->second->faults().hasStruck(FaultKind::serviceSilent)) {
        return std::nullopt;
    }
    const Board& board = found->second->board();
    card_driver::putInformation(reply, board.name, board.location);
    return card_driver::kInformationBytes;
}

// The ordinary case needs no stack frame; everything else is a tail call.
uint32_t SimulatedHost::loadWord(const uint32_t* address) {
    const std::size_t index = view_.indexOf(address);
    if (index >= view_.count) {
        [[unlikely]] return loadThroughAnotherView(address);
    }
    if (clock_.tick()) {
        [[unlikely]] return loadAfterWaking(index);
    }
    return view_.words[index];
}

uint32_t SimulatedHost::loadAfterWaking(std::size_t index) {
    clock_.wake();
    return view_.words[index];
}

uint32_t SimulatedHost::loadThroughAnotherView(const uint32_t* address) {
    return findView(address) ? loadWord(address) : RegisterWindow::kNobodyAnswers;
}

void SimulatedHost::storeWord(uint32_t* address, uint32_t word) {
    const std::size_t index = view_.indexOf(address);
    if (index >= view_.count) [[unlikely]] {
        if (findView(address)) {
            storeWord(address, word);
        }
        return;
    }
    if (clock_.tick()) {
        [[unlikely]] clock_.wake();
    }
    if (view_.registersOf != nullptr) {
        view_.registersOf->storeRegister(static_cast<uint32_t>(index * sizeof(uint32_t)), word);
    }
}

bool SimulatedHost::findView(const void* address) {
    bool once = false;
    for (const Mapping& mapping : mappings_) {
        const View view{.base = reinterpret_cast<uintptr_t>(mapping.space.base()),
                        .count = mapping.window->words().size(),
                        .words = mapping.window->words().data(),
                        .registersOf = mapping.memoryType == 0 ? mapping.card : nullptr};
        if (view.indexOf(address) >= view.count) {
            continue;
        }
        if (mapping.live) {
            view_ = view;
            return true;
        }
        once = true;
    }
    machine_.ledger().record(Misuse::strayAccess, "",
                             once ? "A word was accessed through a window that had been taken away."
                                  : "A word was accessed where no window has ever been.",
                             clock_.accesses());
    return false;
}

bool SimulatedHost::deliverShutDownEvent(uint64_t processSerialNumber) {
    return machine_.deliverShutDownEvent(processSerialNumber);
}

Host::RightAnswer SimulatedHost::askForAdministratorRight() {
    if (machine_.drivers().refusesAdministrator) {
        return RightAnswer::denied;
    }
    return prompt_ && prompt_() ? RightAnswer::granted : RightAnswer::cancelled;
}

bool SimulatedHost::runPrivilegedTool(const std::string& tool, const std::vector<std::string>& arguments) {
    const bool started = tools_.run(tool, arguments);
    closeOrphanedConnections();
    return started;
}

void SimulatedHost::closeOrphanedConnections() {
    if (machine_.drivers().publishes(card_driver::kServiceClass)) {
        return;
    }
    while (!connections_.empty()) {
        closeConnection(connections_.begin()->first);
    }
}

void SimulatedHost::programEnded() {
    const LiveObjects live = CountLiveObjects();
    const auto note = [this](std::size_t count, const char* what) {
        if (count != 0) {
            machine_.ledger().record(
                Misuse::leftBehind, "",
                "A program ended without giving back " + std::to_string(count) + " of its " + what + '.',
                clock_.accesses());
        }
    };
    note(liveMappings(), "mapped windows");
    note(live.services, "services");
    note(live.iterators, "iterators");
    note(live.coreFoundationObjects, "bundle's objects");
    note(live.appleEventDescriptors, "event descriptors");
    if (machine_.isOn() && machine_.drivers().loaded.empty()) {
        note(live.authorizations, "authorizations");
    }
    note(tools_.unwaitedFor(), "child processes");
}

std::size_t SimulatedHost::liveMappings() const {
    return static_cast<std::size_t>(std::ranges::count_if(mappings_, &Mapping::live));
}

}  // namespace simulator
