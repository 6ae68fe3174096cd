#include "tools/cardsim/ImageContent.h"

#include <vector>

#include "files/UserError.h"
#include "images/play/ImagePlay.h"
#include "tools/command_line/Streams.h"

namespace cardsim {

using simulator::PromCells;

PromCells contentOfImage(const std::string& file) {
    const std::vector<uint8_t> image = tools::readInput(file);
    images::ImagePlay play(image);
    while (!play.isComplete()) {
        if (const auto fault = play.playCommand()) {
            throw files::UserError(tools::inputName(file) + ": " + *fault);
        }
    }
    PromCells content;
    content.assign(play.content().bytes());
    return content;
}

}  // namespace cardsim
