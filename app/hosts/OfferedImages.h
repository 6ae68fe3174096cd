#pragma once

// Which of the bundle's images may be offered for the cards of a computer.
//
// An image for a simulated card would ruin a real one for good (images/prom/FirmwareKind.h). The simulated
// cards on the bus of a guest computer are offered the simulated images, and no others.

#include <cstdint>
#include <functional>
#include <span>
#include <string>

enum class CardsOfComputer { kReal, kSimulated };

// Functions for UpdaterSetup::mayBeOffered, which reads the image, and mayBeWritten. If one returns false, a
// line on standard error says why. An image that cannot be read to its end is not offered either.
std::function<bool(const std::string& path)> OfferedImages(CardsOfComputer cards);
std::function<bool(const std::string& path, std::span<const uint8_t> image)> WrittenImages(
    CardsOfComputer cards);
