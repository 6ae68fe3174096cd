#pragma once

// Plays an image with the player itself, command by command, on a simulated chain.
//
// It answers the player's JTAG port, of which there is one in a program: one image is played at a time.

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "simulator/jtag/PromCells.h"

namespace images {

class ImagePlay {
  public:
    // The image must outlive the play. The PROM begins as given, erased unless something else is said.
    explicit ImagePlay(std::span<const uint8_t> image, simulator::PromCells before = {});
    ImagePlay(const ImagePlay&) = delete;
    ImagePlay& operator=(const ImagePlay&) = delete;
    ~ImagePlay();

    // Plays the next command. One sentence when the player cannot go on, or nothing.
    [[nodiscard]] std::optional<std::string> playCommand();
    [[nodiscard]] bool isComplete() const;

    // The first thing done to the PROM that its makers forbid, such as a wait that is too short: one
    // sentence, or nothing.
    [[nodiscard]] std::optional<std::string> misuse() const;
    // True while the PROM needs more time for an operation, and while it can be programmed.
    [[nodiscard]] bool isBusy() const;
    [[nodiscard]] bool isInProgrammingMode() const;
    // True once a page has been erased or programmed, with whatever it may be.
    [[nodiscard]] bool hasWritten() const;
    // What the PROM holds now.
    [[nodiscard]] const simulator::PromCells& content() const;

  private:
    struct Run;
    std::unique_ptr<Run> run_;
};

}  // namespace images
