#pragma once

// The folder that holds the administrator's rules, such as /etc/vupdater/cards.d.

#include <sys/types.h>

#include <filesystem>

#include "linux/pci/CardRules.h"

namespace pci {

constexpr std::size_t kMostRuleFiles = 100;
constexpr std::size_t kMostRuleFileBytes = 65536;

// Reads all files *.conf of the folder in the order of their names. A file counts only if it is an ordinary
// one, belongs to the trusted owner and cannot be written by others; the folder likewise. Everything else is
// a complaint. A folder that does not exist has no rules.
CardRules readCardRules(const std::filesystem::path& folder, uid_t trustedOwner = 0);

}  // namespace pci
