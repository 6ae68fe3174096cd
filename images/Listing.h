#pragma once

// Images as text for people, one command per line, from which ListingReader makes the same bytes again.
//
//   000007: XSDRSIZE 33
//   00000C: XTDOMASK 0x001FFFFFFE
//   000012: XSIR 13 0x1FDF
//
// A line has, all of them optional: the offset in the image, in hexadecimal and with a colon, which nobody
// reads back, so that lines can be moved; a command with its operands; and a comment from a semicolon on.
// Operands stand in the order in which the image has them, with blanks between:
//
//   number     decimal or with 0x: XSDRSIZE and XSIR in bits, XRUNTEST in microseconds, XREPEAT in retries
//   value      with 0x, most significant digit first. It fills the bytes that the size in force gives it:
//              high digits that are 0 can be left out, and 0x0 is a value of any length, even of none
//   state      a name, such as Run-Test/Idle or Pause-DR, or a number for the bare operand byte
//   steps      XSDRINC's step values stand after its data; their count is not written
//
// BYTES and a hexadecimal number of any length, two digits per byte, stands for bytes as they are: what is no
// command of the player, a command that the end of the image cuts off, and what follows XCOMPLETE.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "images/Command.h"

namespace images {

// The name of a line that stands for bytes as they are.
constexpr std::string_view kBytesLine = "BYTES";

// Names for the operand of XENDIR or XENDDR; nothing for an operand that the player refuses.
[[nodiscard]] std::optional<std::string_view> endStateName(XsvfOpcode opcode, uint32_t operand);

// The line of the command at an offset, with its line end.
[[nodiscard]] std::string listingLine(std::size_t offset, const Command& command);

// A few bytes of an image can be a thousand characters of a listing.
constexpr std::size_t kMostListingBytes = std::size_t{256} << 20;

// All of an image, whatever it is. Throws std::length_error when the text is longer than `mostBytes`.
[[nodiscard]] std::string listingOf(std::span<const uint8_t> image,
                                    std::size_t mostBytes = kMostListingBytes);

}  // namespace images
