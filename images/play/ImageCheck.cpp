#include "images/play/ImageCheck.h"

#include <vector>

#include "catalogue/ImageName.h"
#include "images/ByteText.h"
#include "images/CommandReader.h"
#include "images/play/ImagePlay.h"
#include "images/prom/CommandRules.h"

namespace images {
namespace {

std::optional<std::string> faultOfEnd(const CommandReader& reader) {
    const auto rest = reader.rest();
    switch (reader.end()) {
        case ImageEnd::complete:
            if (rest.empty()) {
                return std::nullopt;
            }
            return "The image continues for " + bytesText(rest.size()) + " after XCOMPLETE.";
        case ImageEnd::missing:
            return "The image ends without XCOMPLETE.";
        case ImageEnd::cutOff:
            return "The image ends within " + std::string(formOf(rest.front())->name) + ".";
        case ImageEnd::unknownCommand:
            return byteText(rest.front()) + " is not a command that the player has.";
    }
    return std::nullopt;
}

// A PROM in which every bit is programmed, so that an image must erase a page before writing it.
simulator::PromCells usedProm() {
    return {std::vector<uint8_t>(simulator::kPromBytes, 0x00), 0, 0};
}

// What is wrong with the state in which an image has left the PROM.
std::optional<std::string> faultOfResult(const ImagePlay& play) {
    if (play.isBusy()) {
        return "The image ends before the PROM has finished the last operation.";
    }
    if (play.isInProgrammingMode()) {
        return "The image ends while the PROM is still in programming mode.";
    }
    return std::nullopt;
}

}  // namespace

ImageReport checkImage(std::span<const uint8_t> image) {
    ImageReport report;
    CommandReader reader(image);
    CommandRules rules;
    ImagePlay play(image, usedProm());
    std::size_t offset = 0;
    const auto note = [&](std::optional<std::string> reason) {
        if (reason && !report.fault) {
            report.fault = ImageFault{offset, *std::move(reason)};
        }
    };
    while (const auto command = reader.next()) {
        note(rules.faultOf(*command));
        if (!report.fault) {
            note(play.playCommand());
            note(play.misuse());
        }
        if (play.isComplete()) {
            note(faultOfResult(play));
        }
        if (report.fault) {
            return report;
        }
        ++report.commands;
        report.accesses = rules.accesses();
        offset = reader.offset();
    }
    note(faultOfEnd(reader));
    if (!play.hasWritten()) {
        note("The image ends without erasing or programming a page.");
    }
    if (!report.fault) {
        report.configuration = simulator::decodeConfiguration(play.content().pages());
    }
    return report;
}

std::optional<std::string> nameFault(const std::optional<simulator::FpgaConfiguration>& content,
                                     const std::optional<std::string>& fileName) {
    if (!content) {
        return !fileName || catalogue::isImageFileName(*fileName)
                   ? std::nullopt
                   : std::optional("The name is not that of an image for any card.");
    }
    const auto rightName = catalogue::imageFileName({.modelCode = content->modelCode,
                                                     .flavour = content->flavour,
                                                     .version = content->version,
                                                     .boardRevision = content->boardRevision});
    if (!rightName) {
        return "The content is for a model, board or version that no file name can tell.";
    }
    if (fileName && *fileName != *rightName) {
        return "The name does not fit, the content is that of " + *rightName + ".";
    }
    return std::nullopt;
}

}  // namespace images
