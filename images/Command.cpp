#include "images/Command.h"

#include <bit>

namespace images {
namespace {

// Takes bytes off the front; once there are too few, it takes none.
class Front {
  public:
    explicit Front(std::span<const uint8_t> bytes) : bytes_(bytes) {}

    std::span<const uint8_t> value(std::size_t bytes) {
        if (isShort_ || bytes > bytes_.size() - taken_) {
            isShort_ = true;
            return {};
        }
        taken_ += bytes;
        return bytes_.subspan(taken_ - bytes, bytes);
    }

    uint32_t number(std::size_t bytes) {
        uint32_t result = 0;
        for (const uint8_t byte : value(bytes)) {
            result = result << 8 | byte;
        }
        return result;
    }

    bool isShort() const { return isShort_; }
    std::size_t taken() const { return taken_; }

  private:
    std::span<const uint8_t> bytes_;
    std::size_t taken_ = 0;
    bool isShort_ = false;
};

}  // namespace

std::size_t valueBytes(uint32_t bits) {
    return static_cast<uint16_t>(static_cast<int32_t>(bits + 7) / 8);
}

void ValueSizes::take(const Command& command) {
    if (command.opcode() == XsvfOpcode::XSDRSIZE) {
        data = valueBytes(command.number);
    } else if (command.opcode() == XsvfOpcode::XSETSDRMASKS) {
        std::size_t bits = 0;
        for (const uint8_t byte : command.second) {
            bits += static_cast<std::size_t>(std::popcount(byte));
        }
        step = (bits + 7) / 8;
    }
}

std::optional<Command> readCommand(const CommandForm& form, std::span<const uint8_t> bytes,
                                   const ValueSizes& sizes) {
    Front front(bytes);
    front.value(1);
    Command command;
    command.form = &form;
    switch (form.operands) {
        case Operands::none:
            break;
        case Operands::byte:
        case Operands::state:
        case Operands::endState:
            command.number = front.number(1);
            break;
        case Operands::number:
            command.number = front.number(4);
            break;
        case Operands::instruction:
            command.number = front.number(1);
            command.first = front.value(valueBytes(command.number));
            break;
        case Operands::value:
            command.first = front.value(sizes.data);
            break;
        case Operands::twoValues:
            command.first = front.value(sizes.data);
            command.second = front.value(sizes.data);
            break;
        case Operands::steps:
            command.first = front.value(sizes.data);
            command.number = front.number(1);
            command.second = front.value(command.number * sizes.step);
            break;
    }
    if (front.isShort()) {
        return std::nullopt;
    }
    command.bytes = front.taken();
    return command;
}

}  // namespace images
