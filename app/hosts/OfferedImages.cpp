#include "app/hosts/OfferedImages.h"

#include <fcntl.h>

#include <cstdio>
#include <filesystem>

#include "files/OpenFile.h"
#include "files/OutputFile.h"
#include "files/UserError.h"
#include "images/prom/FirmwareKind.h"

namespace {

using images::FirmwareKind;

// Why the image must not be offered; empty if it may be.
std::string whyNot(const std::string& path, std::span<const uint8_t> image, CardsOfComputer cards) {
    const std::string name = files::printable(std::filesystem::path(path).filename().string());
    const FirmwareKind kind = images::firmwareKindOf(image);
    if (kind == FirmwareKind::unreadable) {
        return name + " is damaged: it is not an image, or it is incomplete.";
    }
    if (kind == FirmwareKind::simulated && cards == CardsOfComputer::kReal) {
        return name + " is firmware for simulated cards and would ruin a real one.";
    }
    if (kind != FirmwareKind::simulated && cards == CardsOfComputer::kSimulated) {
        return name + " is not firmware for simulated cards, and this computer's cards are simulated.";
    }
    return {};
}

std::string whyNot(const std::string& path, CardsOfComputer cards) {
    try {
        return whyNot(path,
                      files::OpenFile::ordinary(AT_FDCWD, files::behindLinks(path), O_RDONLY, path).read(),
                      cards);
    } catch (const files::UserError& error) {
        return error.what();
    }
}

// Takes the reason that whyNot gives. If there is one, prints it and what follows from it, and returns false.
bool isAllowed(const std::string& reason, const char* consequence) {
    if (!reason.empty()) {
        std::fprintf(stderr, "vupdater: %s %s\n", reason.c_str(), consequence);
    }
    return reason.empty();
}

}  // namespace

std::function<bool(const std::string& path)> OfferedImages(CardsOfComputer cards) {
    return [cards](const std::string& path) { return isAllowed(whyNot(path, cards), "It is not offered."); };
}

std::function<bool(const std::string& path, std::span<const uint8_t> image)> WrittenImages(
    CardsOfComputer cards) {
    return [cards](const std::string& path, std::span<const uint8_t> image) {
        return isAllowed(whyNot(path, image, cards), "It was not written.");
    };
}
