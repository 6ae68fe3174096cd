#include <cmath>
#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <vector>

#include "files/UserError.h"
#include "images/ByteText.h"
#include "images/play/ImageCheck.h"
#include "images/prom/ContentText.h"
#include "tools/command_line/CommandLine.h"
#include "tools/command_line/Streams.h"
#include "tools/xsvf/Commands.h"

namespace tools {
namespace {

namespace fs = std::filesystem;

// Follows a subject.
constexpr const char* kUnknownContent = "content that is not a configuration the simulated card can read";

// "offset 0x108044: The comparison fails on a simulated card."
std::string faultText(const images::ImageFault& fault) {
    return "offset 0x" + images::offsetText(fault.offset) + ": " + fault.reason;
}

// "7702 commands, 275756419 register accesses, about 92 s on a card"
std::string playText(const images::ImageReport& report) {
    return std::to_string(report.commands) + (report.commands == 1 ? " command, " : " commands, ") +
           std::to_string(report.accesses.count()) + " register accesses, about " +
           std::to_string(std::lround(report.accesses.seconds())) + " s on a card";
}

void show(const std::string& name, std::ostream& out) {
    const std::vector<uint8_t> image = readInput(name);
    const images::ImageReport report = images::checkImage(image);
    out << inputName(name) << '\n';
    if (report.fault) {
        out << "  Fault    " << faultText(*report.fault) << '\n';
    } else {
        out << "  For      "
            << (report.configuration ? images::contentText(report.configuration) : kUnknownContent) << '\n';
    }
    out << "  Size     " << images::bytesText(image.size()) << '\n'
        << "  Content  " << playText(report) << (report.fault ? ", up to the fault" : "") << '\n';
}

void showAll(const std::vector<std::string>& names, std::ostream& out, std::ostream& err) {
    refuseStandardInputTwice(names);
    bool isAnyUnread = false;
    for (const std::string& name : names) {
        try {
            show(name, out);
        } catch (const files::UserError& unreadable) {
            err << "xsvf: " << unreadable.what() << '\n';
            isAnyUnread = true;
        }
    }
    if (isAnyUnread) {
        exitWith(kFailed);
    }
}

// What is wrong with the image or its name, in one sentence; nothing if both are good.
std::optional<std::string> faultOf(const images::ImageReport& report, const std::string& name,
                                   bool mustBeKnown) {
    if (report.fault) {
        return faultText(*report.fault);
    }
    if (!report.configuration && mustBeKnown) {
        return "The content is not a configuration the simulated card can read.";
    }
    return images::nameFault(report.configuration, isStandardStream(name)
                                                       ? std::nullopt
                                                       : std::optional(fs::path(name).filename().string()));
}

struct Verdict {
    std::string name;
    std::optional<std::string> fault;  // with the name
    std::optional<std::size_t> bytes;  // nothing for a file that could not be read
    images::ImageReport report;
};

Verdict judge(const std::string& name, bool mustBeKnown) {
    Verdict verdict;
    verdict.name = name;
    try {
        const std::vector<uint8_t> image = readInput(name);
        verdict.bytes = image.size();
        verdict.report = images::checkImage(image);
        if (const auto fault = faultOf(verdict.report, name, mustBeKnown)) {
            verdict.fault = inputName(name) + ": " + *fault;
        }
    } catch (const files::UserError& unreadable) {
        verdict.fault = unreadable.what();
    }
    return verdict;
}

void say(const Verdict& verdict, std::ostream& out) {
    const bool isKnown = verdict.report.configuration.has_value();
    out << inputName(verdict.name) << ": "
        << (isKnown ? images::contentText(verdict.report.configuration) + ": no fault found; "
                    : "No fault found; ")
        << images::bytesText(verdict.bytes.value_or(0)) << ", " << playText(verdict.report)
        << (isKnown ? ".\n"
                    : std::string("; ") + kUnknownContent + ", so nothing tells whether the name fits.\n");
}

nlohmann::ordered_json jsonOf(const Verdict& verdict) {
    using Json = nlohmann::ordered_json;
    const images::ImageReport& report = verdict.report;
    const auto ifRead = [&](auto number) { return verdict.bytes ? Json(number) : Json(); };
    return {{"image", inputName(verdict.name)},
            {"good", !verdict.fault},
            {"fault", verdict.fault ? Json(*verdict.fault) : Json()},
            {"offset", report.fault ? Json(report.fault->offset) : Json()},
            {"content", images::contentJson(report.configuration)},
            {"bytes", ifRead(verdict.bytes.value_or(0))},
            {"commands", ifRead(report.commands)},
            {"accesses", ifRead(report.accesses.count())},
            {"seconds", ifRead(report.accesses.seconds())}};
}

struct CheckOptions {
    std::vector<std::string> images;
    bool mustBeKnown = false;
    bool asJson = false;
};

void checkAll(const CheckOptions& options, std::ostream& out, std::ostream& err) {
    refuseStandardInputTwice(options.images);
    bool isAnyBad = false;
    auto list = nlohmann::ordered_json::array();
    for (const std::string& image : options.images) {
        const Verdict verdict = judge(image, options.mustBeKnown);
        isAnyBad = isAnyBad || verdict.fault;
        if (verdict.fault) {
            err << "xsvf: " << *verdict.fault << '\n';
        } else if (!options.asJson) {
            say(verdict, out);
        }
        list.push_back(jsonOf(verdict));
    }
    if (options.asJson) {
        writeJson(list, out);
    }
    if (isAnyBad) {
        exitWith(kFailed);
    }
}

}  // namespace

void addCheckCommands(CLI::App& program, std::ostream& out, std::ostream& err) {
    const auto shown = std::make_shared<std::vector<std::string>>();
    CLI::App* const show = program.add_subcommand(
        "show", "Show what images are for, their size, and how long they take on a card");
    show->add_option("image", *shown, "The images; - is standard input")
        ->required()
        ->check(checkFileName)
        ->type_name("IMAGE");
    show->footer("Exits with 0 if every image can be read, and 1 if not.");
    show->callback([shown, &out, &err] { showAll(*shown, out, err); });

    const auto options = std::make_shared<CheckOptions>();
    CLI::App* const check = program.add_subcommand(
        "check", "Report the first fault of each image, or what it is for if it has none");
    check->add_option("image", options->images, "The images; - is standard input")
        ->required()
        ->check(checkFileName)
        ->type_name("IMAGE");
    check->add_flag("--known-content", options->mustBeKnown,
                    "Fail for content that does not tell whether the name fits");
    check->add_flag("--json", options->asJson,
                    "Print a list with an object for each image: image, good, fault, offset (of the command "
                    "with the fault), content (model, board, firmware, date), and bytes, commands, accesses "
                    "and seconds on a card; null for what is not known");
    check->footer("Exits with 0 if no image has a fault, and 1 if any has.");
    check->callback([options, &out, &err] { checkAll(*options, out, err); });
}

}  // namespace tools
