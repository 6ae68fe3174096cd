#pragma once

// Bytes, numbers of bytes and offsets as text.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace images {

constexpr char kHexadecimalDigits[] = "0123456789ABCDEF";

// Appends two digits per byte.
void appendHexadecimal(std::string& text, std::span<const uint8_t> bytes);

// 0x2F
std::string byteText(uint8_t byte);

// 0x00002F, with at least this many digits.
std::string hexadecimalText(uint32_t number, int digits);

// 1 byte, 2 bytes
std::string bytesText(std::size_t bytes);

// An image's offset, at least six digits without a prefix, as listings and faults give it.
std::string offsetText(std::size_t offset);

}  // namespace images
