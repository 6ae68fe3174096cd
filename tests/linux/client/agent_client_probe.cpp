// A client of the agent that does what the lines on its standard input say, and answers each with lines that
// end with "done". Its other messages are on standard error. When it waits for a lock, it gives logind up
// after a second.

#include <sys/mman.h>

#include <chrono>
#include <csignal>
#include <iostream>
#include <string>
#include <utility>

#include "linux/client/AgentClient.h"

namespace {

void showCards(client::AgentClient& client) {
    const auto cards = client.cards();
    if (!cards) {
        std::cout << "nobody answers\n";
        return;
    }
    for (const pci::FoundCard& card : *cards) {
        std::cout << card.address << '|' << card.name << '|' << card.location << '|' << card.isSimulated
                  << '|' << card.refusal << '\n';
    }
}

volatile sig_atomic_t givesUp = 0;

// Leaves the range mapped, as the updater does.
void open(client::AgentClient& client) {
    std::string address;
    uint32_t range = 0;
    std::cin >> address >> range;
    const auto opened = client.openRange(address, range);
    if (!opened) {
        std::cout << "not opened\n";
        return;
    }
    auto* const base = static_cast<const char*>(
        mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED, opened->file.descriptor(), 0));
    std::cout << opened->bytes << ' ' << std::string(base + opened->offsetInPage, 4) << '\n';
}

}  // namespace

int main() {
    // Interrupts whatever waits.
    struct sigaction action = {};
    action.sa_handler = [](int) {};
    sigaction(SIGUSR1, &action, nullptr);
    action.sa_handler = [](int) { givesUp = 1; };
    sigaction(SIGUSR2, &action, nullptr);
    int waits = 0;
    client::AgentClient client([&waits] { return ++waits, givesUp == 0; }, std::chrono::seconds(1));
    for (std::string word; std::cin >> word;) {
        if (word == "cards") {
            showCards(client);
        } else if (word == "claim" || word == "claim-asking") {
            givesUp = 0;
            constexpr const char* kAnswers[] = {"granted", "cancelled", "denied"};
            std::cout << kAnswers[static_cast<int>(client.claim(word != "claim"))] << '\n';
        } else if (word == "open") {
            open(client);
        } else if (word == "let-go") {
            client.letGo();
        } else if (word == "begin") {
            client.beginWrite();
        } else if (word == "end") {
            client.endWrite();
        } else if (word == "waits") {
            std::cout << std::exchange(waits, 0) << '\n';
        } else if (word == "power-off") {
            std::cout << (client.powerOff() ? "begun" : "not begun") << '\n';
        }
        std::cout << "done" << std::endl;
    }
}
