#pragma once

// Plays an image with the updater's player, command by command, on a simulated chain.
//
// It defines the player's JTAG port, of which a program has one, so only one image is played at a time.

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "simulator/jtag/PromCells.h"

namespace images {

class ImagePlay {
  public:
    // The image must outlive the play. `before` is what the PROM holds first; by default it is erased.
    explicit ImagePlay(std::span<const uint8_t> image, simulator::PromCells before = {});
    ImagePlay(const ImagePlay&) = delete;
    ImagePlay& operator=(const ImagePlay&) = delete;
    ~ImagePlay();

    // Plays the next command. Returns a sentence if the player cannot continue.
    [[nodiscard]] std::optional<std::string> playCommand();
    bool isComplete() const;

    // The first misuse of the PROM, such as a wait that is too short, in a sentence.
    [[nodiscard]] std::optional<std::string> misuse() const;
    // True while the PROM needs more time for an operation, and while it can be programmed.
    bool isBusy() const;
    bool isInProgrammingMode() const;
    // True once a page has been erased or programmed.
    bool hasWritten() const;
    // What the PROM holds now.
    const simulator::PromCells& content() const;

  private:
    struct Run;
    std::unique_ptr<Run> run_;
};

}  // namespace images
