#include "images/prom/FirmwareKind.h"

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
    // Takes the value's lowest bits, of the last byte first; there may be fewer.
    void shift(std::span<const uint8_t> value, uint32_t bits) {
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

// The steps of XSDRINC are values of their own if its masks leave nothing of the value before.
void shiftSteps(SignatureSearch& search, const Command& command, uint32_t dataBits) {
    const std::size_t bytes = command.number == 0 ? 0 : command.second.size() / command.number;
    for (uint32_t step = 0; step < command.number; ++step) {
        search.shift(command.second.subspan(step * bytes, bytes), dataBits);
    }
}

}  // namespace

FirmwareKind firmwareKindOf(std::span<const uint8_t> image) {
    CommandReader reader(image);
    SignatureSearch search;
    uint32_t dataBits = 0;
    while (const auto command = reader.next()) {
        if (command->opcode() == XsvfOpcode::XSDRSIZE) {
            dataBits = command->number;
        } else if (shiftsData(command->opcode())) {
            search.shift(command->first, dataBits);
        }
        if (command->opcode() == XsvfOpcode::XSDRINC) {
            shiftSteps(search, *command, dataBits);
        }
    }
    if (search.hasFound()) {
        return FirmwareKind::simulated;
    }
    return reader.end() == ImageEnd::complete ? FirmwareKind::other : FirmwareKind::unreadable;
}

}  // namespace images
