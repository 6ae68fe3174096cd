#include "simulator/guest/proxy/ProxyDevice.h"

namespace simulator {
namespace {

constexpr uint64_t kNobodyAnswers = ~uint64_t{0};

}  // namespace

bool ProxyDevice::answers() const {
    return card_.running() && !card_.faults().hasStruck(FaultKind::cardVanished);
}

std::optional<uint64_t> ProxyDevice::carryOut(const ProxyRequest& request) {
    const auto offset = static_cast<uint32_t>(request.address);
    switch (request.kind) {
        case ProxyRequest::Kind::notice:
            return std::nullopt;
        case ProxyRequest::Kind::readConfiguration:
            return answers() ? configuration_.read(offset, request.bytes) : kNobodyAnswers;
        case ProxyRequest::Kind::writeConfiguration:
            if (answers()) {
                configuration_.write(offset, request.bytes, static_cast<uint32_t>(request.value));
            }
            return 0;
        case ProxyRequest::Kind::load:
        case ProxyRequest::Kind::store:
            return accessMemory(request);
        case ProxyRequest::Kind::reset:
            configuration_.reset();
            return std::nullopt;
    }
    return std::nullopt;
}

uint64_t ProxyDevice::accessMemory(const ProxyRequest& request) {
    if (accesses_.refuses(request.address, request.bytes)) {
        return kNobodyAnswers;
    }
    const auto place = configuration_.find(request.address);
    const RegisterWindow* const window = place ? card_.window(place->memoryRange) : nullptr;
    if (window == nullptr || place->offset >= window->bytes()) {
        accesses_.addStray("A word was accessed behind the card's memory.");
        return kNobodyAnswers;
    }
    if (machine_.clock().tick()) {
        machine_.clock().wake();
    }
    if (request.kind == ProxyRequest::Kind::load) {
        const uint32_t word = window->at(place->offset);
        accesses_.addLoad(place->offset, word);
        return __builtin_bswap32(word);
    }
    const uint32_t word = __builtin_bswap32(static_cast<uint32_t>(request.value));
    accesses_.addStore(place->offset, word);
    if (place->memoryRange == 0) {
        card_.storeRegister(place->offset, word);
    }
    return 0;
}

}  // namespace simulator
