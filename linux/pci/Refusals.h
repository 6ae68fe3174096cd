#pragma once

// Why a card cannot be used, and what a person can do about it.

namespace pci::refusals {

constexpr char kLockedDown[] =
    "The kernel's lockdown keeps programs from the card's registers. Switch off Secure Boot in the "
    "computer's "
    "firmware settings until the card has been updated.";
constexpr char kNotMapped[] =
    "The kernel keeps the card's registers for itself. Unload the driver that uses them, then try again.";
constexpr char kNoWindow[] =
    "The card has no such memory range of at least 512 bytes. Check the line that names the card in the "
    "configuration.";
constexpr char kNotPlaced[] =
    "The computer has given the card's registers no usable addresses. Put the card into another slot.";
constexpr char kUnknownNeighbours[] =
    "It could not be found out whether another device has registers in the same page of memory. Try again.";
constexpr char kBusMastering[] =
    "The card's bus mastering cannot be switched off. Switch the computer off and on, then try again.";
constexpr char kMemoryDecoding[] =
    "The card's memory decoding cannot be switched on. Switch the computer off and on, then try again.";
constexpr char kInUse[] = "Another program uses the card. Quit that program, then try again.";
constexpr char kSimulatedBesideReal[] =
    "This is a simulated card, and the computer has a real one. Remove the line of one of them from the "
    "configuration.";
constexpr char kNotClaimed[] = "The card was not claimed. Quit the program, then start it again.";
constexpr char kGone[] =
    "The card could not be looked at. Check that it is still in the computer, then try again.";

}  // namespace pci::refusals
