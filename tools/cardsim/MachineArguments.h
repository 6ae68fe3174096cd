#pragma once

// How a command line names a machine and a card of it.

#include <CLI/CLI.hpp>
#include <cstddef>
#include <memory>
#include <string>

#include "simulator/storage/MachineDirectory.h"

namespace cardsim {

// The machine in a folder, as it was left: to change, and to look at, also while another program has it.
// Throws MachineError or files::FileError.
[[nodiscard]] std::unique_ptr<simulator::MachineDirectory> openMachine(const std::string& folder);
[[nodiscard]] std::unique_ptr<const simulator::MachineDirectory> viewMachine(const std::string& folder);

// Throws MachineError when writing to a file would damage the machine itself.
void requireForeign(const simulator::MachineDirectory& directory, const std::string& file);

// Cards are counted from 1, as show lists them. Throws MachineError for one that is not there.
[[nodiscard]] std::size_t indexOfCard(const simulator::Machine& machine, std::size_t number);

// "VornMX-B in PCI slot 1"
[[nodiscard]] std::string nameOf(const simulator::Card& card);

// The arguments that most commands begin with.
CLI::Option* addFolder(CLI::App& command, std::string& folder);
CLI::Option* addCardNumber(CLI::App& command, std::size_t& number);
// What is wrong with a text that is to go into machine.json, which takes one line of UTF-8; empty when
// nothing is.
[[nodiscard]] std::string checkText(const std::string& text);
// The same for a text that goes into a card's description, which has room for 255 bytes.
[[nodiscard]] std::string checkDescription(const std::string& text);

}  // namespace cardsim
