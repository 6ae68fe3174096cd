#include "images/prom/FirmwareKind.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <map>
#include <utility>
#include <vector>

#include "images/CommandReader.h"
#include "simulator/jtag/FpgaConfiguration.h"

namespace images {
namespace {

// The signature as it is when the last of its bits has been shifted in: the first bit is the lowest one of
// the first byte.
constexpr uint32_t signatureInShiftOrder() {
    uint32_t bits = 0;
    for (std::size_t i = 0; i < simulator::kConfigurationSignature.size(); ++i) {
        bits |= uint32_t{simulator::kConfigurationSignature[i]} << (8 * i);
    }
    return bits;
}

class SignatureSearch {
  public:
    void shift(bool bit) {
        last_ = last_ >> 1 | uint32_t{bit} << 31;
        hasFound_ = hasFound_ || last_ == signatureInShiftOrder();
    }
    bool hasFound() const { return hasFound_; }

  private:
    uint32_t last_ = 0;  // the last 32 bits
    bool hasFound_ = false;
};

// What an image shifts through the data register: all of it in a row, and what several passes leave in a
// page. A PROM's cells only lose bits until they are erased, so each pass could bring a part of the
// signature.
class Shifts {
  public:
    // Takes the value's lowest bits, of the last byte first; there may be fewer. The player takes a very
    // large number of bits for a negative one and shifts nothing.
    void shift(std::span<const uint8_t> value, uint32_t bits) {
        if (bits > std::numeric_limits<int32_t>::max()) {
            return;
        }
        for (auto byte = value.rbegin(); byte != value.rend(); ++byte) {
            for (int bit = 0; bit < 8 && bits > 0; ++bit, --bits) {
                const bool isSet = (*byte >> bit & 1) != 0;
                inARow_.shift(isSet);
                forInstruction_.push_back(isSet);
            }
        }
    }

    // What comes next is for this instruction.
    void select(std::span<const uint8_t> instruction) {
        if (forInstruction_.size() > kMostAddressBits) {
            combineWithEarlierPasses();
        } else if (!forInstruction_.empty()) {
            address_ = forInstruction_;
        }
        forInstruction_.clear();
        instruction_.assign(instruction.begin(), instruction.end());
    }

    bool hasSignature() const { return inARow_.hasFound() || hasFoundInPasses_; }

  private:
    using Bits = std::vector<bool>;

    // A page is longer.
    static constexpr std::size_t kMostAddressBits = 64;
    static constexpr std::size_t kMostPasses = 8;

    // The register keeps the last bits, so pages of different lengths have the last one in common.
    void combineWithEarlierPasses() {
        std::vector<Bits>& passes = passes_[{instruction_, address_}];
        passes.insert(passes.begin(), forInstruction_);
        passes.resize(std::min(passes.size(), kMostPasses));
        Bits combined = passes.front();
        for (auto pass = passes.begin() + 1; pass != passes.end(); ++pass) {
            SignatureSearch search;
            const std::size_t shared = std::min(combined.size(), pass->size());
            combined.erase(combined.begin(), combined.end() - static_cast<std::ptrdiff_t>(shared));
            for (std::size_t i = 0; i < shared; ++i) {
                combined[i] = combined[i] && (*pass)[pass->size() - shared + i];
                search.shift(combined[i]);
            }
            hasFoundInPasses_ = hasFoundInPasses_ || search.hasFound();
        }
    }

    SignatureSearch inARow_;
    bool hasFoundInPasses_ = false;
    std::vector<uint8_t> instruction_;
    Bits forInstruction_;
    Bits address_;  // the last few bits for an instruction of their own
    std::map<std::pair<std::vector<uint8_t>, Bits>, std::vector<Bits>> passes_;  // the latest first
};

bool shiftsData(XsvfOpcode opcode) {
    switch (opcode) {
        case XsvfOpcode::XSDR:
        case XsvfOpcode::XSDRTDO:
        case XsvfOpcode::XSDRINC:
        case XsvfOpcode::XSDRB:
        case XsvfOpcode::XSDRC:
        case XsvfOpcode::XSDRE:
        case XsvfOpcode::XSDRTDOB:
        case XsvfOpcode::XSDRTDOC:
        case XsvfOpcode::XSDRTDOE:
            return true;
        default:
            return false;
    }
}

// The masks of XSETSDRMASKS, and the values that XSDRINC makes with them.
class StepMasks {
  public:
    void take(const Command& command) {
        increment_ = command.first;
        data_ = command.second;
    }

    // Shifts the value of each step: the one before with the increment added, and with the step's bits where
    // the data mask has ones.
    void shiftSteps(Shifts& shifts, const Command& command, uint32_t dataBits) const {
        std::vector<uint8_t> value(command.first.begin(), command.first.end());
        const std::size_t bytes = command.number == 0 ? 0 : command.second.size() / command.number;
        for (uint32_t step = 0; step < command.number; ++step) {
            addIncrement(value);
            putBits(value, command.second.subspan(step * bytes, bytes));
            shifts.shift(value, dataBits);
        }
    }

  private:
    void addIncrement(std::span<uint8_t> value) const {
        uint32_t carry = 0;
        for (std::size_t index = value.size(); index-- > 0; carry >>= 8) {
            carry += value[index] + (index < increment_.size() ? increment_[index] : 0U);
            value[index] = static_cast<uint8_t>(carry);
        }
    }

    // The lowest bits first, of the value and of the bits.
    void putBits(std::span<uint8_t> value, std::span<const uint8_t> bits) const {
        std::size_t next = 0;
        for (std::size_t place = 0; place < 8 * data_.size(); ++place) {
            const std::size_t index = data_.size() - 1 - place / 8;
            const auto position = static_cast<uint8_t>(1U << place % 8);
            if ((data_[index] & position) == 0) {
                continue;
            }
            const bool isSet = (bits[bits.size() - 1 - next / 8] >> next % 8 & 1) != 0;
            ++next;
            if (index < value.size()) {
                value[index] = static_cast<uint8_t>((value[index] & ~position) | (isSet ? position : 0));
            }
        }
    }

    std::span<const uint8_t> increment_;
    std::span<const uint8_t> data_;
};

}  // namespace

FirmwareKind firmwareKindOf(std::span<const uint8_t> image) {
    CommandReader reader(image);
    Shifts shifts;
    StepMasks masks;
    uint32_t dataBits = 0;
    while (const auto command = reader.next()) {
        if (command->opcode() == XsvfOpcode::XSDRSIZE) {
            dataBits = command->number;
        } else if (command->opcode() == XsvfOpcode::XSIR) {
            shifts.select(command->first);
        } else if (shiftsData(command->opcode())) {
            shifts.shift(command->first, dataBits);
        }
        if (command->opcode() == XsvfOpcode::XSETSDRMASKS) {
            masks.take(*command);
        } else if (command->opcode() == XsvfOpcode::XSDRINC) {
            masks.shiftSteps(shifts, *command, dataBits);
        }
    }
    if (shifts.hasSignature()) {
        return FirmwareKind::simulated;
    }
    return reader.end() == ImageEnd::complete ? FirmwareKind::other : FirmwareKind::unreadable;
}

}  // namespace images
