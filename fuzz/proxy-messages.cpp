// Any bytes as what an emulator sends to a card on a guest computer's bus.

#include <algorithm>
#include <span>
#include <vector>

#include "files/UserError.h"
#include "fuzz/Require.h"
#include "simulator/guest/proxy/ProxyDevice.h"

namespace {

using namespace simulator;

constexpr uint32_t kIdentifiers = 0xCA4DFADE;  // at the beginning of the configuration
constexpr std::size_t kValueBytes = 8;
constexpr std::size_t kHeaderBytes = 16;

PromCells shippedCells() {
    static const std::vector<uint8_t> pages =
        encodeConfiguration({.modelCode = 0x23, .boardRevision = 2, .flavour = 'W', .version = 7, .date = 0});
    return PromCells(pages, 0x234130CC, PromCells::kProtectionMask);
}

Board board() {
    return {.name = "Vorn K40", .location = "PCI slot 1", .modelCode = 0x23, .revision = 2};
}

// Carries out a message; returns whether it was one.
bool carryOut(ProxyDevice& device, std::span<const uint8_t> message) {
    try {
        const ProxyRequest request = parseProxyMessage(message);
        const auto value = device.carryOut(request);
        require(encodeProxyAnswer(value).size() == kHeaderBytes + (value ? kValueBytes : 0),
                "an answer is a header and the value, if there is one");
        return true;
    } catch (const files::UserError&) {
        return false;
    }
}

void serve(ProxyDevice& device, std::span<const uint8_t> bytes) {
    try {
        for (auto length = proxyMessageBytes(bytes); length && *length <= bytes.size();
             length = proxyMessageBytes(bytes)) {
            require(*length >= kHeaderBytes && *length <= kMostProxyBytes, "a message has a header and fits");
            if (!carryOut(device, bytes.first(*length))) {
                return;
            }
            bytes = bytes.subspan(*length);
        }
    } catch (const files::UserError&) {
        return;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    Machine machine;
    machine.addCard(board(), shippedCells());
    machine.powerOn();
    ProxyDevice device(machine, machine.card(0), PciFunction{});
    serve(device, {data, size});
    const PromCells before = shippedCells();
    const ProxyRequest identify{
        .kind = ProxyRequest::Kind::readConfiguration, .address = 0, .value = 0, .bytes = 4};
    require(device.carryOut(identify) == kIdentifiers, "no message changes who the card is");
    require(machine.accesses() <= size / kHeaderBytes, "a message is at most one access");
    require(std::ranges::equal(before.bytes(), machine.card(0).cells().bytes()),
            "a few accesses do not reach the PROM's cells");
    return 0;
}
