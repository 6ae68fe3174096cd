#include "simulator/guest/proxy/ProxyMessages.h"

#include <algorithm>

#include "files/UserError.h"

namespace simulator {
namespace {

enum Command : uint32_t {
    kShareMemory,
    kAnswer,
    kWriteConfiguration,
    kReadConfiguration,
    kStore,
    kLoad,
    kShareInterrupt,
    kReset,
};

constexpr std::size_t kHeaderBytes = 16;
constexpr std::size_t kLengthOffset = 8;
constexpr std::size_t kConfigurationBytes = 12;  // address, value and width, 4 bytes each
constexpr std::size_t kAccessBytes = 24;         // address and value, 8 bytes each, width, and padding

constexpr std::size_t kMostConfigurationWidth = 4;
constexpr uint32_t kBitsInAByte = 8;

uint64_t number(std::span<const uint8_t> bytes, std::size_t offset, std::size_t width) {
    uint64_t value = 0;
    for (std::size_t index = width; index-- > 0;) {
        value = value << kBitsInAByte | bytes[offset + index];
    }
    return value;
}

void append(std::vector<uint8_t>& bytes, uint64_t value) {
    for (std::size_t index = 0; index < sizeof(value); ++index) {
        bytes.push_back(static_cast<uint8_t>(value >> (index * kBitsInAByte)));
    }
}

[[noreturn]] void refuse() {
    throw files::UserError("The emulator sent a message that x-pci-proxy-dev does not send.");
}

void require(bool isRight) {
    if (!isRight) {
        refuse();
    }
}

ProxyRequest configurationAccess(ProxyRequest::Kind kind, std::span<const uint8_t> body) {
    require(body.size() == kConfigurationBytes);
    const uint64_t width = number(body, 8, 4);
    require(width >= 1 && width <= kMostConfigurationWidth);
    return {.kind = kind,
            .address = number(body, 0, 4),
            .value = number(body, 4, 4),
            .bytes = static_cast<uint32_t>(width)};
}

ProxyRequest memoryAccess(ProxyRequest::Kind kind, std::span<const uint8_t> body) {
    require(body.size() == kAccessBytes);
    return {.kind = kind,
            .address = number(body, 0, 8),
            .value = number(body, 8, 8),
            .bytes = static_cast<uint32_t>(number(body, 16, 4))};
}

}  // namespace

std::optional<std::size_t> proxyMessageBytes(std::span<const uint8_t> beginning) {
    if (beginning.size() < kHeaderBytes) {
        return std::nullopt;
    }
    const uint64_t body = number(beginning, kLengthOffset, 8);
    require(body <= kMostProxyBytes - kHeaderBytes);
    return kHeaderBytes + static_cast<std::size_t>(body);
}

ProxyRequest parseProxyMessage(std::span<const uint8_t> message) {
    require(proxyMessageBytes(message) == message.size());
    const std::span<const uint8_t> body = message.subspan(kHeaderBytes);
    using Kind = ProxyRequest::Kind;
    switch (number(message, 0, 4)) {
        case kShareMemory:
        case kShareInterrupt:
            return {.kind = Kind::notice};
        case kWriteConfiguration:
            return configurationAccess(Kind::writeConfiguration, body);
        case kReadConfiguration:
            return configurationAccess(Kind::readConfiguration, body);
        case kStore:
            return memoryAccess(Kind::store, body);
        case kLoad:
            return memoryAccess(Kind::load, body);
        case kReset:
            return {.kind = Kind::reset};
        default:
            refuse();
    }
}

std::vector<uint8_t> encodeProxyAnswer(std::optional<uint64_t> value) {
    std::vector<uint8_t> message;
    append(message, kAnswer);
    append(message, value ? sizeof(*value) : 0);
    if (value) {
        append(message, *value);
    }
    return message;
}

}  // namespace simulator
