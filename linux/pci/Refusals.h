#pragma once

// Why a card cannot be used, and what a person can do about it.

namespace pci::refusals {

constexpr char kLockedDown[] =
    "The kernel is locked down, so programs cannot reach the card's registers. Switch Secure Boot off in "
    "the computer's firmware settings until the card has been updated.";
constexpr char kNotMapped[] =
    "The kernel keeps the card's registers for itself. Unload the driver that uses them, then try again.";
constexpr char kNoWindow[] =
    "The card's memory range is missing or smaller than 512 bytes. Check the line that names the card in "
    "the configuration.";
constexpr char kNotPlaced[] =
    "The computer has not assigned usable addresses to the card's registers. Put the card into another "
    "slot.";
constexpr char kUnknownNeighbours[] =
    "It is unknown whether another device has registers in the same page of memory. Try again.";
constexpr char kBusMastering[] =
    "The card's bus mastering cannot be switched off. Switch the computer off and on, then try again.";
constexpr char kMemoryDecoding[] =
    "The card's memory decoding cannot be switched on. Switch the computer off and on, then try again.";
constexpr char kInUse[] = "Another program is using the card. Quit that program, then try again.";
constexpr char kSimulatedBesideReal[] =
    "This card is simulated, but the computer also has a real one. Remove the line for one of them from "
    "the configuration.";
constexpr char kNotClaimed[] = "The card was not claimed. Quit the program, then start it again.";
constexpr char kGone[] =
    "The card could not be read. Check that it is still in the computer, then try again.";

}  // namespace pci::refusals
