#include "tools/xsvf/CheckCommand.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <filesystem>
#include <memory>
#include <ostream>

#include "files/WholeFile.h"
#include "images/BoardRevision.h"
#include "images/ByteText.h"
#include "images/ImageName.h"
#include "images/play/ImageCheck.h"
#include "tools/command_line/CommandLine.h"

namespace tools {

namespace {

namespace fs = std::filesystem;

// The name of the image that puts this into a PROM. Nothing for a configuration that no name can tell.
std::optional<std::string> imageFileNameFor(const simulator::FpgaConfiguration& content) {
    const images::CardModel* const model = images::modelCoded(content.modelCode);
    if (model == nullptr || content.version > images::kHighestVersion ||
        !images::boardRevisionName(content.boardRevision)) {
        return std::nullopt;
    }
    return images::imageFileName(*model, content.flavour, content.version, content.boardRevision);
}

// What is wrong with the image or its name, in one sentence or as the lack of one.
std::optional<std::string> faultOf(const images::ImageReport& report, const std::string& fileName,
                                   bool mustBeKnown) {
    if (report.fault) {
        return "offset 0x" + images::offsetText(report.fault->offset) + ": " + report.fault->reason;
    }
    if (!report.configuration && mustBeKnown) {
        return "The content is no configuration that the simulated card knows.";
    }
    if (!report.configuration) {
        return images::isImageFileName(fileName)
                   ? std::nullopt
                   : std::optional("The name is not that of an image for any card.");
    }
    const auto name = imageFileNameFor(*report.configuration);
    if (!name) {
        return "The content is for a model, board or version that no file name can tell.";
    }
    if (*name != fileName) {
        return "The name does not fit, the content is that of " + *name + ".";
    }
    return std::nullopt;
}

std::string summaryOf(const images::ImageReport& report, std::size_t bytes) {
    return std::to_string(report.commands) + (report.commands == 1 ? " command, " : " commands, ") +
           images::bytesText(bytes) + ", " + std::to_string(report.accesses.count()) +
           " register accesses, about " + std::to_string(std::lround(report.accesses.seconds())) +
           " s on a card" +
           (report.configuration ? "."
                                 : "; the content is no configuration that tells whether the name fits.");
}

void check(const fs::path& path, bool mustBeKnown, std::ostream& out) {
    const std::vector<uint8_t> image = files::readFile(path);
    const images::ImageReport report = images::checkImage(image);
    if (const auto fault = faultOf(report, path.filename().string(), mustBeKnown)) {
        throw std::runtime_error(path.string() + ": " + *fault);
    }
    out << path.string() << ": " << summaryOf(report, image.size()) << '\n';
}

struct CheckOptions {
    std::vector<fs::path> images;
    bool mustBeKnown = false;
};

void checkAll(const CheckOptions& options, std::ostream& out, std::ostream& err) {
    bool isAnyBad = false;
    for (const fs::path& image : options.images) {
        try {
            check(image, options.mustBeKnown, out);
        } catch (const std::runtime_error& fault) {
            err << "xsvf: " << fault.what() << '\n';
            isAnyBad = true;
        }
    }
    if (isAnyBad) {
        throw CLI::RuntimeError(kFailed);
    }
}

}  // namespace

void addCheckCommand(CLI::App& program, std::ostream& out, std::ostream& err) {
    const auto options = std::make_shared<CheckOptions>();
    CLI::App* const command = program.add_subcommand(
        "check", "Find the first fault of each image, or tell what it takes on a card");
    command->add_option("image", options->images, "The images")
        ->required()
        ->check(fileName())
        ->type_name("IMAGE");
    command->add_flag("--known-content", options->mustBeKnown,
                      "Refuse a content that does not tell whether the name fits");
    command->callback([options, &out, &err] { checkAll(*options, out, err); });
}

}  // namespace tools
