// The administrator's rules about which devices are cards.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <span>

#include "fuzz/Require.h"
#include "linux/pci/CardRules.h"

namespace {

using namespace pci;

bool isPrintable(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
}

std::string written(const Identifiers& identifiers) {
    char text[16];
    std::snprintf(text, sizeof text, "%04x:%04X", identifiers.vendor, identifiers.device);
    return text;
}

// The same rule in other words: a parser that skips or mixes up a part does not read it back.
std::string written(const CardRule& rule) {
    std::string line = written(rule.device);
    line += rule.subsystem ? "\t" + written(*rule.subsystem) : "";
    line += rule.isSimulated ? " simulated" : "";
    for (std::size_t range = kMemoryRanges; range-- > 0;) {
        if (const auto bar = rule.bars[range]) {
            require(*bar < 6, "a rule names one of six BARs");
            line += " range" + std::to_string(range) + "=" + std::to_string(*bar);
        }
    }
    return line + " \"" + rule.name + "\" # the same\r\n";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    CardRules rules;
    parseCardRules(text, "cards.conf", rules);
    const auto lines = static_cast<std::size_t>(std::ranges::count(text, '\n')) + 1;
    const std::size_t named = std::min(rules.complaints.size(), kMostComplaints);
    require(rules.rules.size() + named + rules.furtherComplaints <= lines, "a line is a rule or a complaint");
    for (const std::string& complaint : std::span(rules.complaints).first(named)) {
        require(complaint.starts_with("cards.conf:"), "a complaint names its file");
        require(std::ranges::none_of(complaint, [](char c) { return c >= 0 && c < ' '; }),
                "a complaint is one line");
    }
    std::string again;
    for (const CardRule& rule : rules.rules) {
        require(!rule.name.empty() && rule.name.size() <= 63 && isPrintable(rule.name),
                "a name can be shown");
        const Identifiers subsystem = rule.subsystem.value_or(Identifiers{});
        const bool isOthers = !rule.subsystem && rules.firstLines.contains({rule.device, subsystem});
        require(isOthers || rules.find(rule.device, subsystem) == &rule, "a rule is found");
        again += written(rule);
    }
    CardRules reread;
    parseCardRules(again, "again.conf", reread);
    require(reread.rules == rules.rules && reread.complaints.empty(), "a rule reads back as itself");
    return 0;
}
