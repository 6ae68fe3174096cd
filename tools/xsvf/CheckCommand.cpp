#include "tools/xsvf/CheckCommand.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <vector>

#include "catalogue/ImageName.h"
#include "images/ByteText.h"
#include "images/play/ImageCheck.h"
#include "images/prom/ContentText.h"
#include "tools/command_line/CommandLine.h"
#include "tools/command_line/JsonText.h"
#include "tools/command_line/Streams.h"
#include "tools/xsvf/ImageSummary.h"

namespace tools {

namespace {

namespace fs = std::filesystem;

// The name of the image that puts this into a PROM. Nothing for a configuration that no name can tell.
std::optional<std::string> imageFileNameFor(const simulator::FpgaConfiguration& content) {
    return catalogue::imageFileName({.modelCode = content.modelCode,
                                     .flavour = content.flavour,
                                     .version = content.version,
                                     .boardRevision = content.boardRevision});
}

// What is wrong with the image or its name, in one sentence or as the lack of one.
std::optional<std::string> faultOf(const images::ImageReport& report, const std::string& name,
                                   bool mustBeKnown) {
    if (report.fault) {
        return faultText(*report.fault);
    }
    if (!report.configuration && mustBeKnown) {
        return "The content is not a configuration the simulated card can read.";
    }
    const auto rightName =
        report.configuration ? imageFileNameFor(*report.configuration) : std::optional<std::string>();
    if (report.configuration && !rightName) {
        return "The content is for a model, board or version that no file name can tell.";
    }
    if (isStandardStream(name)) {
        return std::nullopt;
    }
    const std::string fileName = fs::path(name).filename().string();
    if (!report.configuration) {
        return catalogue::isImageFileName(fileName)
                   ? std::nullopt
                   : std::optional("The name is not that of an image for any card.");
    }
    return fileName == *rightName
               ? std::nullopt
               : std::optional("The name does not fit, the content is that of " + *rightName + ".");
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
    } catch (const std::runtime_error& unreadable) {
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
        throw CLI::RuntimeError(kFailed);
    }
}

}  // namespace

void addCheckCommand(CLI::App& program, std::ostream& out, std::ostream& err) {
    const auto options = std::make_shared<CheckOptions>();
    CLI::App* const command = program.add_subcommand(
        "check", "Find the first fault of each image, or tell that it is good and what it is");
    command->add_option("image", options->images, "The images; - is standard input")
        ->required()
        ->check(fileName())
        ->type_name("IMAGE");
    command->add_flag("--known-content", options->mustBeKnown,
                      "Refuse a content that does not tell whether the name fits");
    command->add_flag("--json", options->asJson,
                      "Print a list with an object for each image: image, good, fault, offset (of the "
                      "command with the fault), content (model, board, firmware, date), and bytes, commands, "
                      "accesses and seconds on a card; what is not known is null");
    command->footer("Exits with 0 if every image is good, and 1 if any is not.");
    command->callback([options, &out, &err] { checkAll(*options, out, err); });
}

}  // namespace tools
