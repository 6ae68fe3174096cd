#include "images/Listing.h"

#include <algorithm>

#include "files/UserError.h"
#include "images/ByteText.h"
#include "images/CommandReader.h"
#include "images/TapStates.h"

namespace images {
namespace {

void appendValue(std::string& line, std::span<const uint8_t> value) {
    line += value.empty() ? " 0x0" : " 0x";
    appendHexadecimal(line, value);
}

void appendState(std::string& line, std::optional<std::string_view> name, uint32_t operand) {
    line += ' ';
    line += name ? std::string(*name) : byteText(static_cast<uint8_t>(operand));
}

void appendSteps(std::string& line, const Command& command) {
    const std::size_t bytes = command.number == 0 ? 0 : command.second.size() / command.number;
    for (std::size_t step = 0; step < command.number; ++step) {
        appendValue(line, command.second.subspan(step * bytes, bytes));
    }
}

std::string_view reasonOf(ImageEnd end) {
    switch (end) {
        case ImageEnd::complete:
            return "after XCOMPLETE";
        case ImageEnd::cutOff:
            return "a command that is cut off";
        default:
            return "not a command of the player";
    }
}

// In lines that fit a window, after a comment that says what the bytes are.
void appendBytes(std::string& text, std::size_t offset, std::span<const uint8_t> bytes, ImageEnd end) {
    constexpr std::size_t kBytesPerLine = 32;
    if (bytes.empty()) {
        return;
    }
    text += "; ";
    text += reasonOf(end);
    text += '\n';
    for (std::size_t done = 0; done < bytes.size(); done += kBytesPerLine) {
        text += offsetText(offset + done);
        text += ": ";
        text += kBytesLine;
        appendValue(text, bytes.subspan(done, std::min(kBytesPerLine, bytes.size() - done)));
        text += '\n';
    }
}

}  // namespace

std::optional<std::string_view> endStateName(XsvfOpcode opcode, uint32_t operand) {
    if (operand == kXsvfEndPause) {
        return tapStateName(opcode == XsvfOpcode::XENDIR ? kTapPauseIR : kTapPauseDR);
    }
    return operand == kXsvfEndIdle ? tapStateName(kTapRunTestIdle) : std::nullopt;
}

std::string listingLine(std::size_t offset, const Command& command) {
    std::string line = offsetText(offset) + ": ";
    line += command.form->name;
    switch (command.form->operands) {
        case Operands::none:
            break;
        case Operands::byte:
        case Operands::number:
            line += ' ' + std::to_string(command.number);
            break;
        case Operands::state:
            appendState(line, tapStateName(static_cast<uint8_t>(command.number)), command.number);
            break;
        case Operands::endState:
            appendState(line, endStateName(command.opcode(), command.number), command.number);
            break;
        case Operands::instruction:
            line += ' ' + std::to_string(command.number);
            appendValue(line, command.first);
            break;
        case Operands::value:
            appendValue(line, command.first);
            break;
        case Operands::twoValues:
            appendValue(line, command.first);
            appendValue(line, command.second);
            break;
        case Operands::steps:
            appendValue(line, command.first);
            appendSteps(line, command);
            break;
    }
    return line + '\n';
}

std::string listingOf(std::span<const uint8_t> image, std::size_t mostBytes) {
    std::string text;
    CommandReader reader(image);
    std::size_t offset = reader.offset();
    while (const auto command = reader.next()) {
        text += listingLine(offset, *command);
        offset = reader.offset();
        if (text.size() > mostBytes) {
            throw files::UserError("The listing would be longer than " + bytesText(mostBytes) + ".");
        }
    }
    appendBytes(text, offset, reader.rest(), reader.end());
    return text;
}

}  // namespace images
