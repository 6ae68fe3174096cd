#include "platform/CardDriver.h"

#include <algorithm>

namespace card_driver {
namespace {

void putText(std::span<uint8_t> field, std::string_view text) {
    std::ranges::fill(field, uint8_t{0});
    std::ranges::copy(text.substr(0, field.size() - 1), field.begin());
}

}  // namespace

void putInformation(std::span<uint8_t> reply, std::string_view name, std::string_view location) {
    putText(reply.first(kTextBytes), name);
    putText(reply.subspan(kLocationAt, kTextBytes), location);
}

}  // namespace card_driver
