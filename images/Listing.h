#pragma once

// Images as text for people, with one command per line. ListingReader makes the same bytes from it.
//
//   000007: XSDRSIZE 33
//   00000C: XTDOMASK 0x001FFFFFFE
//   000012: XSIR 13 0x1FDF
//
// A line consists of an offset in the image, a command with its operands, and a comment after a semicolon.
// Each of them is optional. The offset is hexadecimal and ends with a colon; it is not read back, so lines
// can be moved. Operands are in the order of the image, with blanks between:
//
//   number     decimal or with 0x: XSDRSIZE and XSIR in bits, XRUNTEST in microseconds, XREPEAT in retries
//   value      with 0x, most significant digit first. The size in force gives its length in the image, so
//              leading zeros can be left out, and 0x0 is a value of any length, even of no bytes
//   state      a name, such as Run-Test/Idle or Pause-DR, or the number of the operand byte
//   steps      XSDRINC's step values follow its data; their count is not written
//
// BYTES and a hexadecimal number of any length, with two digits for each byte, are bytes that are not a whole
// command of the player, or that follow XCOMPLETE.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "images/Command.h"

namespace images {

// In place of a command's name.
constexpr std::string_view kBytesLine = "BYTES";

// The state that an operand of XENDIR or XENDDR stands for, or nothing if the player refuses the operand.
std::optional<std::string_view> endStateName(XsvfOpcode opcode, uint32_t operand);

// The line for the command at an offset, with its line end.
std::string listingLine(std::size_t offset, const Command& command);

// A few bytes of an image can become a thousand characters of a listing.
constexpr std::size_t kMostListingBytes = std::size_t{256} << 20;

// The listing of any bytes. Throws files::UserError if it would be longer than `mostBytes`.
std::string listingOf(std::span<const uint8_t> image, std::size_t mostBytes = kMostListingBytes);

}  // namespace images
