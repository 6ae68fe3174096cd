#pragma once

// The machine and the card that a command line names.

#include <CLI/CLI.hpp>
#include <cstddef>
#include <memory>
#include <string>

#include "simulator/storage/MachineDirectory.h"

namespace cardsim {

// Failures are files::UserError.

// The machine in a folder as it was left: to change, or to look at, even while another program has it open.
std::unique_ptr<simulator::MachineDirectory> openMachine(const std::string& folder);
std::unique_ptr<const simulator::MachineDirectory> viewMachine(const std::string& folder);

// Throws if the file is one of the machine's own.
void requireForeign(const simulator::MachineDirectory& directory, const std::string& file);

// Users count cards from 1. Throws if there is no card of that number.
std::size_t indexOfCard(const simulator::Machine& machine, std::size_t number);

// "VornMX-B in PCI slot 1"
std::string nameOf(const simulator::Card& card);

// Adds the arguments with which most commands begin.
CLI::Option* addFolder(CLI::App& command, std::string& folder);
CLI::Option* addCardNumber(CLI::App& command, std::size_t& number);

// For CLI11: what is wrong with a text for machine.json, which must be one line of UTF-8. Empty if nothing
// is.
std::string checkText(const std::string& text);
// The same for a card's name or location, for which the driver has 255 bytes.
std::string checkDescription(const std::string& text);

}  // namespace cardsim
