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
std::string whyNotOffered(const std::string& path, CardsOfComputer cards) {
    const std::string name = files::printable(std::filesystem::path(path).filename().string());
    const auto image = files::OpenFile::ordinary(AT_FDCWD, files::behindLinks(path), O_RDONLY, path).read();
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

bool mayBeOffered(const std::string& path, CardsOfComputer cards) {
    std::string reason;
    try {
        reason = whyNotOffered(path, cards);
    } catch (const files::UserError& error) {
        reason = error.what();
    }
    if (!reason.empty()) {
        std::fprintf(stderr, "vupdater: %s It is not offered.\n", reason.c_str());
    }
    return reason.empty();
}

}  // namespace

std::function<bool(const std::string& path)> OfferedImages(CardsOfComputer cards) {
    return [cards](const std::string& path) { return mayBeOffered(path, cards); };
}
