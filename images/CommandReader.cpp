#include "images/CommandReader.h"

namespace images {

std::optional<Command> CommandReader::next() {
    if (isComplete_ || offset_ == image_.size()) {
        return std::nullopt;
    }
    const CommandForm* const form = formOf(image_[offset_]);
    if (form == nullptr) {
        return std::nullopt;
    }
    const auto command = readCommand(*form, rest(), sizes_);
    if (command) {
        offset_ += command->bytes;
        sizes_.take(*command);
        isComplete_ = form->opcode == XsvfOpcode::XCOMPLETE;
    }
    return command;
}

void CommandReader::continueIn(std::span<const uint8_t> image) {
    image_ = image;
    offset_ = 0;
}

ImageEnd CommandReader::end() const {
    if (isComplete_) {
        return ImageEnd::complete;
    }
    if (rest().empty()) {
        return ImageEnd::missing;
    }
    return formOf(rest().front()) != nullptr ? ImageEnd::cutOff : ImageEnd::unknownCommand;
}

}  // namespace images
