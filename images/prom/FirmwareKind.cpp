#include "images/prom/FirmwareKind.h"

#include <limits>
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
    // Takes the value's lowest bits, of the last byte first; there may be fewer. The player takes a very
    // large number of bits for a negative one and shifts nothing.
    void shift(std::span<const uint8_t> value, uint32_t bits) {
        if (bits > std::numeric_limits<int32_t>::max()) {
            return;
        }
        for (auto byte = value.rbegin(); byte != value.rend(); ++byte) {
            for (int bit = 0; bit < 8 && bits > 0; ++bit, --bits) {
                last_ = last_ >> 1 | uint32_t{*byte} >> bit << 31;
                hasFound_ = hasFound_ || last_ == signatureInShiftOrder();
            }
        }
    }
    bool hasFound() const { return hasFound_; }

  private:
    uint32_t last_ = 0;  // the last 32 bits
    bool hasFound_ = false;
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
    void shiftSteps(SignatureSearch& search, const Command& command, uint32_t dataBits) const {
        std::vector<uint8_t> value(command.first.begin(), command.first.end());
        const std::size_t bytes = command.number == 0 ? 0 : command.second.size() / command.number;
        for (uint32_t step = 0; step < command.number; ++step) {
            addIncrement(value);
            putBits(value, command.second.subspan(step * bytes, bytes));
            search.shift(value, dataBits);
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
    SignatureSearch search;
    StepMasks masks;
    uint32_t dataBits = 0;
    while (const auto command = reader.next()) {
        if (command->opcode() == XsvfOpcode::XSDRSIZE) {
            dataBits = command->number;
        } else if (shiftsData(command->opcode())) {
            search.shift(command->first, dataBits);
        }
        if (command->opcode() == XsvfOpcode::XSETSDRMASKS) {
            masks.take(*command);
        } else if (command->opcode() == XsvfOpcode::XSDRINC) {
            masks.shiftSteps(search, *command, dataBits);
        }
    }
    if (search.hasFound()) {
        return FirmwareKind::simulated;
    }
    return reader.end() == ImageEnd::complete ? FirmwareKind::other : FirmwareKind::unreadable;
}

}  // namespace images
