#include "simulator/jtag/FpgaConfiguration.h"

#include <algorithm>
#include <array>

namespace simulator {
namespace {

constexpr std::size_t kLayoutAt = 4;
constexpr uint8_t kLayout = 1;
constexpr std::size_t kModelCodeAt = 5;
constexpr std::size_t kBoardRevisionAt = 6;
constexpr std::size_t kFlavourAt = 7;
constexpr std::size_t kVersionAt = 8;
constexpr std::size_t kDateAt = 10;
constexpr std::size_t kFillerAt = 12;
constexpr std::size_t kChecksumAt = kPromBytes - 4;

constexpr uint32_t kCrcPolynomial = 0xEDB88320;  // IEEE 802.3, least significant bit first

// Bytes that are taken together: every PROM is checked whenever the machine is switched on.
constexpr std::size_t kCrcStride = 8;

// [n][byte] is the remainder of the byte with n zero bytes after it.
using CrcTables = std::array<std::array<uint32_t, 256>, kCrcStride>;

constexpr CrcTables crcTables() {
    CrcTables tables{};
    for (uint32_t byte = 0; byte < 256; ++byte) {
        uint32_t remainder = byte;
        for (CrcTables::value_type& table : tables) {
            for (int bit = 0; bit < 8; ++bit) {
                remainder = (remainder >> 1) ^ ((remainder & 1) != 0 ? kCrcPolynomial : 0);
            }
            table[byte] = remainder;
        }
    }
    return tables;
}

uint32_t crc32(std::span<const uint8_t> bytes) {
    static constexpr CrcTables tables = crcTables();
    uint32_t remainder = 0xFFFFFFFF;
    for (; bytes.size() >= kCrcStride; bytes = bytes.subspan(kCrcStride)) {
        uint32_t next = 0;
        for (std::size_t i = 0; i < kCrcStride; ++i) {
            const uint32_t carried = i < sizeof remainder ? remainder >> (8 * i) : 0;
            next ^= tables[kCrcStride - 1 - i][(carried ^ bytes[i]) & 0xFF];
        }
        remainder = next;
    }
    for (const uint8_t byte : bytes) {
        remainder = (remainder >> 8) ^ tables[0][(remainder ^ byte) & 0xFF];
    }
    return ~remainder;
}

void putBigEndian(std::span<uint8_t> bytes, uint32_t number) {
    for (std::size_t i = bytes.size(); i-- > 0; number >>= 8) {
        bytes[i] = static_cast<uint8_t>(number);
    }
}

uint32_t getBigEndian(std::span<const uint8_t> bytes) {
    uint32_t number = 0;
    for (const uint8_t byte : bytes) {
        number = number << 8 | byte;
    }
    return number;
}

}  // namespace

std::vector<uint8_t> encodeConfiguration(const FpgaConfiguration& configuration) {
    std::vector<uint8_t> prom(kPromBytes);
    const std::span bytes(prom);
    std::ranges::copy(kConfigurationSignature, bytes.begin());
    bytes[kLayoutAt] = kLayout;
    bytes[kModelCodeAt] = configuration.modelCode;
    bytes[kBoardRevisionAt] = configuration.boardRevision;
    bytes[kFlavourAt] = static_cast<uint8_t>(configuration.flavour);
    bytes[kVersionAt] = configuration.version;
    putBigEndian(bytes.subspan(kDateAt, 2), configuration.date);

    // xorshift never leaves 0, so it must not start there.
    uint32_t random = crc32(bytes.first(kFillerAt)) | 1;
    for (uint8_t& byte : bytes.subspan(kFillerAt, kChecksumAt - kFillerAt)) {
        random ^= random << 13;
        random ^= random >> 17;
        random ^= random << 5;
        byte = static_cast<uint8_t>(random >> 24);
    }
    putBigEndian(bytes.subspan(kChecksumAt), crc32(bytes.first(kChecksumAt)));
    return prom;
}

std::optional<FpgaConfiguration> decodeConfiguration(std::span<const uint8_t> prom) {
    if (prom.size() != kPromBytes ||
        !std::ranges::equal(prom.first(kConfigurationSignature.size()), kConfigurationSignature) ||
        prom[kLayoutAt] != kLayout) {
        return std::nullopt;
    }
    if (getBigEndian(prom.subspan(kChecksumAt)) != crc32(prom.first(kChecksumAt))) {
        return std::nullopt;
    }
    const char flavour = static_cast<char>(prom[kFlavourAt]);
    if (flavour != 'M' && flavour != 'W') {
        return std::nullopt;
    }
    return FpgaConfiguration{.modelCode = prom[kModelCodeAt],
                             .boardRevision = prom[kBoardRevisionAt],
                             .flavour = flavour,
                             .version = prom[kVersionAt],
                             .date = static_cast<uint16_t>(getBigEndian(prom.subspan(kDateAt, 2)))};
}

}  // namespace simulator
