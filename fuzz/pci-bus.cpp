// A card and a neighbour on a bus whose description may be anything. The input is texts, each ended by a line
// "--": the card's resource, config, enable and power/control, the neighbour's resource, a slot's address,
// the lockdown's states, and what a program that was killed has noted about the card.

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "fuzz/Require.h"
#include "linux/pci/Cards.h"
#include "tests/support/MadeUpBus.h"

namespace {

using namespace pci;

constexpr char kCard[] = "0000:05:01.0";
constexpr char kNeighbour[] = "0000:05:02.0";
constexpr std::string_view kEnd = "\n--\n";

struct TwoDevices : MadeUpBus {
    TwoDevices() {
        add(kCard, {});
        add(kNeighbour, {}, "8086");
    }
};

// Without its end, but with the line break before it.
std::string take(std::string_view& input) {
    const std::size_t end = input.find(kEnd);
    std::string text(input.substr(0, end == std::string_view::npos ? end : end + 1));
    input.remove_prefix(end == std::string_view::npos ? input.size() : end + kEnd.size());
    return text;
}

struct Line {
    unsigned long long first = 0;
    unsigned long long last = 0;
    unsigned long long flags = 0;

    bool isPlacedMemory() const { return (flags & 0x200) != 0 && (flags & 0x30000000) == 0 && first != 0; }
};

// What a description says, read a second time in a different way.
std::array<Line, 7> linesOf(const std::string& resource) {
    std::array<Line, 7> lines;
    std::size_t position = 0;
    for (Line& line : lines) {
        const int found =
            std::sscanf(resource.c_str() + position, "%llx %llx %llx", &line.first, &line.last, &line.flags);
        require(found == 3, "a description that was understood has seven lines of three numbers");
        position = resource.find('\n', position) + 1;
    }
    return lines;
}

void checkOpened(const MadeUpBus& bus, const OpenedRange& range) {
    const auto page = static_cast<unsigned long long>(sysconf(_SC_PAGESIZE));
    require((bus.command(kCard) & 6) == 2, "an opened card decodes memory and masters nothing");
    char bar = 0;
    require(pread(range.file.descriptor(), &bar, 1, 0) == 1 && bar >= '0' && bar <= '5', "a BAR was opened");
    const Line own = linesOf(bus.attribute(kCard, "resource"))[static_cast<std::size_t>(bar - '0')];
    require(own.isPlacedMemory() && own.first % page == range.offsetInPage,
            "a range begins where its BAR does");
    require(range.bytes >= 0x200 && range.bytes - 1 <= own.last - own.first, "a range is as long as its BAR");
    for (const Line& other : linesOf(bus.attribute(kNeighbour, "resource"))) {
        require(!other.isPlacedMemory() || own.last / page < other.first / page ||
                    other.last / page < own.first / page,
                "no page is another device's too");
    }
}

void checkTexts(const std::vector<FoundCard>& cards) {
    for (const FoundCard& card : cards) {
        const std::string all = card.address + card.location + card.refusal;
        require(std::ranges::all_of(all, [](char c) { return c >= ' ' && c <= '~'; }),
                "what is said of a card can be shown");
    }
}

}  // namespace

// Where the system has a place for files in memory, writing is many times as fast there.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    if (std::filesystem::is_directory("/dev/shm")) {
        setenv("TMPDIR", "/dev/shm", 0);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static const TwoDevices bus;
    std::string_view input(reinterpret_cast<const char*>(data), size);
    for (const char* const attribute : {"resource", "config", "enable", "power/control"}) {
        bus.setAttribute(kCard, attribute, take(input));
    }
    bus.setAttribute(kNeighbour, "resource", take(input));
    bus.addSlot("3\xFF", take(input));
    bus.lockDown(take(input));
    const std::string note = take(input);
    bus.setAttribute(kCard, "driver_override", note.empty() ? "(null)\n" : note);

    CardRules rules;
    parseCardRules("1af4:1110 \"A card\"\n", "cards.conf", rules);
    Cards cards(bus.path(), rules);
    const std::string before = bus.attribute(kCard, "config");
    checkTexts(cards.list("client"));
    cards.claim("client");
    for (const uint32_t memoryRange : {0U, 1U}) {
        try {
            checkOpened(bus, cards.openRange("client", kCard, memoryRange));
        } catch (const files::UserError&) {
        }
    }
    cards.release("client");
    std::string after = bus.attribute(kCard, "config");
    require(after.size() == before.size(), "a configuration keeps its length");
    for (std::size_t i = 0; i < after.size(); ++i) {
        const int changed = static_cast<uint8_t>(before[i] ^ after[i]);
        require(changed == 0 || (i == 4 && changed == 4) || ((i == 4 || i == 5) && !note.empty()),
                "a release leaves all but bus mastering as it was, or as a note says");
    }
    return 0;
}
