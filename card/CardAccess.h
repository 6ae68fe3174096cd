#pragma once

// Finding the installed cards through their driver, and opening, describing and closing one.

#include <cstdint>

#include "platform/CardDriver.h"

// Each of a card's two description strings, terminating NUL included.
constexpr int kCardTextBytes = card_driver::kTextBytes;

// How many cards can be opened. A card counts if it opens, even if its driver then refuses to describe it. 0
// without a driver.
uint32_t GetNumberOfCardsInstalled();

// Opens the card at a 0-based index in the registry's order and returns its connection, or 0. A non-null
// base0 or base1 asks for that memory range to be mapped and receives its address; the size beside it
// receives its bytes. If mapping fails, the connection is closed again and the result is 0; *base0 may then
// hold an address that is no longer mapped.
[[nodiscard]] uint32_t OpenCard(int index, void** base0, uint32_t* size0, void** base1, uint32_t* size1);

// Closes a connection and takes its mappings away. A number that is not a connection is ignored.
void CloseCard(uint32_t connection);

// Asks the driver for the card's name and location, each into kCardTextBytes bytes. Returns 1; or 0, leaving
// both alone, if the driver did not answer.
[[nodiscard]] int GetCardInformation(uint32_t connection, char* name, char* location);
