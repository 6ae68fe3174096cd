#include "tools/cardsim/ImageContent.h"

#include <vector>

#include "images/play/ImagePlay.h"
#include "simulator/base/MachineError.h"
#include "tools/command_line/Streams.h"

namespace cardsim {

using simulator::MachineError;
using simulator::PromCells;

PromCells contentOfImage(const std::string& file) {
    const std::vector<uint8_t> image = tools::readInput(file);
    images::ImagePlay play(image);
    while (!play.isComplete()) {
        if (const auto fault = play.playCommand()) {
            throw MachineError(tools::inputName(file) + ": " + *fault);
        }
    }
    PromCells content;
    content.setImage(play.content().image());
    return content;
}

}  // namespace cardsim
