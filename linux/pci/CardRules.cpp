#include "linux/pci/CardRules.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "files/PrintableText.h"

namespace pci {
namespace {

constexpr std::size_t kMostLineCharacters = 500;
constexpr std::string_view kRange = "range";
constexpr std::string_view kBlanks = " \t\r";

// Why a line is not a rule.
struct BadLine {
    std::string reason;
};

// Takes the next word off the front of a line; empty at its end.
std::string_view takeWord(std::string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(kBlanks), line.size()));
    const std::string_view word = line.substr(0, line.find_first_of(kBlanks));
    line.remove_prefix(word.size());
    return word;
}

std::optional<uint16_t> parseIdentifier(std::string_view digits) {
    uint16_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
    const bool isNumber = digits.size() == 4 && error == std::errc() && end == digits.data() + digits.size();
    return isNumber ? std::optional(number) : std::nullopt;
}

Identifiers parseIdentifiers(std::string_view word) {
    const std::size_t colon = std::min(word.find(':'), word.size());
    const auto vendor = parseIdentifier(word.substr(0, colon));
    const auto device = parseIdentifier(word.substr(std::min(colon + 1, word.size())));
    if (!vendor || !device) {
        throw BadLine{"\"" + std::string(word) +
                      "\" should be two identifiers of four hexadecimal digits, such as abcd:0123"};
    }
    return {.vendor = *vendor, .device = *device};
}

// What follows "range", such as 0=2.
void parseRange(std::string_view word, CardRule& rule) {
    const std::string_view digits = word.substr(kRange.size());
    const bool isForm = digits.size() == 3 && digits[0] >= '0' && digits[0] <= '1' && digits[1] == '=' &&
                        digits[2] >= '0' && digits[2] <= '5';
    if (!isForm) {
        throw BadLine{"\"" + std::string(word) + "\" should be range0= or range1= and a number from 0 to 5"};
    }
    auto& bar = rule.bars[static_cast<std::size_t>(digits[0] - '0')];
    if (bar) {
        throw BadLine{"a range is named twice"};
    }
    bar = static_cast<uint32_t>(digits[2] - '0');
    if (rule.bars[0] == rule.bars[1]) {
        throw BadLine{"both ranges name the same base address register"};
    }
}

void parseSimulated(CardRule& rule) {
    if (rule.isSimulated) {
        throw BadLine{"\"simulated\" is given twice"};
    }
    rule.isSimulated = true;
}

void parseOption(std::string_view word, CardRule& rule) {
    if (word.starts_with(kRange)) {
        parseRange(word, rule);
    } else if (word == "simulated") {
        parseSimulated(rule);
    } else {
        throw BadLine{"\"" + std::string(word) + "\" is not known here"};
    }
}

// The name begins with the first quotation mark.
std::string parseName(std::string_view quoted) {
    quoted.remove_prefix(1);
    const std::string_view name = quoted.substr(0, quoted.find('"'));
    if (name.size() == quoted.size()) {
        throw BadLine{"the quotation mark after the name is missing"};
    }
    std::string_view rest = quoted.substr(name.size() + 1);
    const std::string_view extra = takeWord(rest);
    if (!extra.empty() && !extra.starts_with('#')) {
        throw BadLine{"the name should be last in the line"};
    }
    const bool isPrintable = std::ranges::all_of(name, [](char c) { return c >= ' ' && c <= '~'; });
    if (!isPrintable || name.empty() || name.size() > kMostNameCharacters) {
        throw BadLine{"the name should be 1 to " + std::to_string(kMostNameCharacters) +
                      " printable ASCII characters"};
    }
    return std::string(name);
}

CardRule parseRule(std::string_view line) {
    if (line.size() > kMostLineCharacters) {
        throw BadLine{"the line is longer than " + std::to_string(kMostLineCharacters) + " characters"};
    }
    const std::size_t quote = line.find('"');
    std::string_view words = line.substr(0, quote);
    CardRule rule;
    rule.device = parseIdentifiers(takeWord(words));
    for (std::string_view word = takeWord(words); !word.empty(); word = takeWord(words)) {
        const bool isFirst = !rule.subsystem && !rule.isSimulated && !rule.bars[0] && !rule.bars[1];
        if (isFirst && word.find(':') != std::string_view::npos) {
            rule.subsystem = parseIdentifiers(word);
        } else {
            parseOption(word, rule);
        }
    }
    if (quote == std::string_view::npos) {
        throw BadLine{"the card's name is missing, in quotation marks at the end of the line"};
    }
    rule.name = parseName(line.substr(quote));
    return rule;
}

NamedKind kindOf(const CardRule& rule) {
    return {rule.device, rule.subsystem};
}

void add(CardRule rule, const std::string& place, CardRules& rules) {
    const NamedKind kind = kindOf(rule);
    const auto known = rules.firstLines.find(kind);
    if (known == rules.firstLines.end()) {
        if (rules.firstLines.size() == kMostRules) {
            throw BadLine{"there are more than " + std::to_string(kMostRules) + " cards"};
        }
        rules.firstLines.emplace(kind, FirstLine{.place = place, .isSimulated = rule.isSimulated});
        rules.rules.push_back(std::move(rule));
        return;
    }
    FirstLine& first = known->second;
    if (rule.isSimulated != first.isSimulated && !first.isContradicted) {
        first.isContradicted = true;
        std::erase_if(rules.rules, [&](const CardRule& each) { return kindOf(each) == kind; });
    }
    const std::string contradiction =
        first.isContradicted
            ? ", but only some of the lines that name them say \"simulated\", so none of those lines counts"
            : "";
    throw BadLine{"these identifiers are already named in " + first.place + contradiction};
}

}  // namespace

const CardRule* CardRules::find(const Identifiers& device, const Identifiers& subsystem) const {
    const bool isSpecific = firstLines.contains({device, subsystem});
    const auto rule = std::ranges::find_if(rules, [&](const CardRule& each) {
        return each.device == device && (isSpecific ? each.subsystem == subsystem : !each.subsystem);
    });
    return rule == rules.end() ? nullptr : &*rule;
}

void CardRules::complain(std::string sentence) {
    if (complaints.size() < kMostComplaints) {
        complaints.push_back(std::move(sentence));
        return;
    }
    ++furtherComplaints;
    complaints.resize(kMostComplaints);
    complaints.push_back(
        "Lines and files that were passed over besides these: " + std::to_string(furtherComplaints) + ".");
}

void parseCardRules(std::string_view text, const std::string& knownAs, CardRules& rules) {
    std::size_t number = 0;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        ++number;
        std::string_view words = line;
        const std::string_view first = takeWord(words);
        if (first.empty() || first.starts_with('#')) {
            continue;
        }
        const std::string file = files::printable(knownAs);
        const std::string lineNumber = std::to_string(number);
        try {
            add(parseRule(line), std::string(file).append(", line ").append(lineNumber), rules);
        } catch (const BadLine& bad) {
            std::string complaint = file;
            complaint.append(":").append(lineNumber).append(": ").append(files::printable(bad.reason));
            rules.complain(complaint.append("."));
        }
    }
}

}  // namespace pci
