#include "images/prom/CommandRules.h"

#include <limits>

#include "images/ByteText.h"
#include "images/TapStates.h"
#include "simulator/jtag/Fpga.h"
#include "simulator/jtag/Prom.h"

namespace images {
namespace {

using simulator::Fpga;
using simulator::Prom;

constexpr uint32_t kMostDataBits = uint32_t{MAX_LEN} * 8;

constexpr uint32_t kChainInstructionBits = Prom::kInstructionBits + Fpga::kInstructionBits;

// The instruction has two bytes, with the PROM's bits above the FPGA's.
bool isProgramInstruction(const Command& command) {
    if (command.number != kChainInstructionBits) {
        return false;
    }
    const uint32_t both = uint32_t{command.first[0]} << 8 | command.first[1];
    return (both >> Fpga::kInstructionBits & 0xFF) == Prom::programInstruction;
}

std::string name(const Command& command) {
    return std::string(command.form->name);
}

std::string stateText(uint8_t code) {
    const auto name = tapStateName(code);
    return name ? std::string(*name) : byteText(code);
}

// A value that the command uses but does not contain must have been loaded with the size now in force.
std::optional<std::string> loadedFault(const Command& command, const char* what, const char* loader,
                                       std::optional<std::size_t> loadedBytes) {
    if (!loadedBytes) {
        return name(command) + " uses " + what + ", but no " + loader + " comes before it.";
    }
    if (*loadedBytes != command.first.size()) {
        return name(command) + " has data of " + bytesText(command.first.size()) + ", but " + what + " of " +
               bytesText(*loadedBytes) + ".";
    }
    return std::nullopt;
}

std::optional<std::string> sizeFault(const Command& command) {
    if (command.number > kMostDataBits) {
        return "XSDRSIZE asks for " + std::to_string(command.number) + " bits; the player takes up to " +
               std::to_string(kMostDataBits) + ".";
    }
    return std::nullopt;
}

std::optional<std::string> waitFault(const Command& command) {
    if (command.number > std::numeric_limits<int32_t>::max()) {
        return "XRUNTEST " + std::to_string(command.number) +
               " is read as a negative wait, so the player would not wait at all.";
    }
    if (command.number > kLongestWaitMicroseconds) {
        return "XRUNTEST waits " + std::to_string(command.number) +
               " microseconds; nothing on a card takes more than " +
               std::to_string(kLongestWaitMicroseconds) + ".";
    }
    return std::nullopt;
}

std::optional<std::string> endStateFault(const Command& command) {
    if (command.number > kXsvfEndPause) {
        return name(command) + " " + std::to_string(command.number) +
               " is not an end state; only 0 and 1 are.";
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> CommandRules::faultOf(const Command& command) {
    if (auto fault = ownFault(command)) {
        return fault;
    }
    remember(command);
    if (counter_.total().count() > kLongestRunSeconds * 1'000'000 * kAccessesPerMicrosecond) {
        return "By the end of " + name(command) + " the image has taken more than an hour on a card.";
    }
    return std::nullopt;
}

CommandRules::Fault CommandRules::ownFault(const Command& command) const {
    switch (command.opcode()) {
        case XsvfOpcode::XSDRSIZE:
            return sizeFault(command);
        case XsvfOpcode::XRUNTEST:
            return waitFault(command);
        case XsvfOpcode::XSIR:
            return instructionFault(command);
        case XsvfOpcode::XSTATE:
            return stateFault(command);
        case XsvfOpcode::XENDIR:
        case XsvfOpcode::XENDDR:
            return endStateFault(command);
        case XsvfOpcode::XSDR:
        case XsvfOpcode::XSDRTDO:
            return comparisonFault(command);
        case XsvfOpcode::XSDRINC:
            if (auto fault = comparisonFault(command)) {
                return fault;
            }
            return stepsFault(command);
        default:
            return std::nullopt;
    }
}

CommandRules::Fault CommandRules::instructionFault(const Command& command) const {
    if (isProgramInstruction(command) && counter_.waitMicroseconds() > kLongestProgramMicroseconds) {
        return "The program instruction is given " + std::to_string(counter_.waitMicroseconds()) +
               " microseconds; a row takes " + std::to_string(Prom::kProgramMicroseconds) + ".";
    }
    return std::nullopt;
}

CommandRules::Fault CommandRules::stateFault(const Command& command) const {
    const auto code = static_cast<uint8_t>(command.number);
    if (!tapStateName(code)) {
        return "XSTATE " + byteText(code) + " is not one of the player's six states.";
    }
    if (!tapClocks(counter_.tapState(), code)) {
        return "XSTATE cannot lead from " + stateText(counter_.tapState()) + " to " + stateText(code) + ".";
    }
    return std::nullopt;
}

CommandRules::Fault CommandRules::comparisonFault(const Command& command) const {
    if (counter_.dataBits() == 0) {
        return std::nullopt;  // nothing is shifted, so nothing is compared
    }
    if (command.opcode() != XsvfOpcode::XSDRTDO) {
        if (auto fault = loadedFault(command, "an expected value", "XSDRTDO", expectedBytes_)) {
            return fault;
        }
    }
    return loadedFault(command, "a mask", "XTDOMASK", compareMaskBytes_);
}

CommandRules::Fault CommandRules::stepsFault(const Command& command) const {
    if (command.number == 0) {
        return std::nullopt;
    }
    if (auto fault = loadedFault(command, "step masks", "XSETSDRMASKS", stepMaskBytes_)) {
        return fault;
    }
    if (*stepMaskBytes_ > std::size_t{kXsvfLongestStepMask}) {
        return "XSDRINC has step masks of " + bytesText(*stepMaskBytes_) + "; the player takes up to " +
               std::to_string(kXsvfLongestStepMask) + ".";
    }
    return std::nullopt;
}

void CommandRules::remember(const Command& command) {
    counter_.take(command);
    switch (command.opcode()) {
        case XsvfOpcode::XTDOMASK:
            compareMaskBytes_ = command.first.size();
            break;
        case XsvfOpcode::XSETSDRMASKS:
            stepMaskBytes_ = command.first.size();
            break;
        case XsvfOpcode::XSDRTDO:
        case XsvfOpcode::XSDRTDOB:
        case XsvfOpcode::XSDRTDOC:
        case XsvfOpcode::XSDRTDOE:
            expectedBytes_ = command.second.size();
            break;
        default:
            break;
    }
}

}  // namespace images
