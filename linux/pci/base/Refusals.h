#pragma once

// Why a card cannot be used, and what a person can do about it. Each refusal is one or two sentences in
// printable ASCII. The program shows it after the card's name and location.
//
// pci::CardRules says what is wrong with the configuration, and client::meaningOf why no card was granted.

#include <string>

namespace pci::refusals {

// For all cards: the kernel reports that it is locked down, or refuses a mapping.
constexpr char kLockedDown[] =
    "The kernel is locked down, so programs cannot reach the card's registers. Switch Secure Boot off in "
    "the computer's firmware settings until the card has been updated.";

// The card's ranges, as the rules name them and the computer has placed them.
constexpr char kNoWindow[] =
    "The card's memory range is missing or smaller than 512 bytes. Check the line that names the card in "
    "the configuration.";
constexpr char kNotPlaced[] =
    "The computer has not assigned usable addresses to the card's registers. Put the card into another "
    "slot.";
constexpr char kUnknownNeighbours[] =
    "It is unknown whether another device has registers in the same page of memory. Try again.";

// The device itself, whoever asks for it.
constexpr char kBridge[] =
    "This is a bridge to other devices, not a card. Correct the line that names it in the configuration.";

// The device itself, when a client claims it or opens a range.
constexpr char kBusMastering[] =
    "The card's bus mastering cannot be switched off. Switch the computer off and on, then try again.";
constexpr char kNotReserved[] =
    "Drivers cannot be kept away from the card. Switch the computer off and on, then try again.";
constexpr char kMemoryDecoding[] =
    "The card's memory decoding cannot be switched on. Switch the computer off and on, then try again.";
constexpr char kGone[] =
    "The card could not be read. Check that it is still in the computer, then try again.";

// The other cards in the computer.
constexpr char kSimulatedBesideReal[] =
    "This card is simulated, but the computer also has a real one. Remove the line for one of them from "
    "the configuration.";

// To one client about a card that others may be able to use.
constexpr char kInUse[] = "Another program is using the card. Quit that program, then try again.";
constexpr char kNotTakenBack[] =
    "The card was given to a program and has not been taken back. Quit that program if it is running, then "
    "start VUpdater.";
constexpr char kStillInUse[] =
    "A program that was given the card earlier is still using it. Quit that program, then try again.";
constexpr char kNotClaimed[] = "The card was not claimed. Quit the program, then start it again.";
constexpr char kAppearedLater[] =
    "The card was not found when the program started. Quit the program, then start it again.";

// A driver has the card.
std::string driver(const std::string& name);
// The kernel may give the card to this driver only, at any time.
std::string reserved(const std::string& driver);
// Another device, at this address, has registers in a page of the card's.
std::string neighbour(const std::string& address);
// mmap(2) of the card's registers failed with this error. EPERM means a kernel that is locked down, EINVAL a
// driver that keeps them.
std::string mapping(int error);
// There is no card at all; the folder is the one whose files name them.
std::string noCard(const std::string& folder);

}  // namespace pci::refusals
