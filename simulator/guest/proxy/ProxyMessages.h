#pragma once

// The messages of QEMU's device x-pci-proxy-dev, which lets another process be a device on a guest computer's
// bus.
//
// A message is a header of 16 bytes and a body:
//
//   0  command, 4 bytes      8  bytes in the body, 8 bytes
//
// Numbers are in the order of x86 processors, the lowest byte first.

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace simulator {

// Of the longest message.
constexpr std::size_t kMostProxyBytes = 16 + 192;

struct ProxyRequest {
    enum class Kind : uint8_t {
        notice,  // irrelevant to a card; not answered
        readConfiguration,
        writeConfiguration,
        load,  // at an address of the guest's memory
        store,
        reset,
    };

    Kind kind;
    uint64_t address = 0;  // in the configuration space, or of the guest's memory
    uint64_t value = 0;    // to be written
    uint32_t bytes = 0;    // that are accessed: in the configuration space 1 to 4, in memory any number
};

// The length of the message that begins with these bytes; nothing if there are too few to tell. Throws
// files::UserError if no message begins so.
std::optional<std::size_t> proxyMessageBytes(std::span<const uint8_t> beginning);

// What a whole message asks for. Throws files::UserError if it is not one.
ProxyRequest parseProxyMessage(std::span<const uint8_t> message);

// The answer to a request: with a value, or to a reset, without one.
std::vector<uint8_t> encodeProxyAnswer(std::optional<uint64_t> value);

}  // namespace simulator
