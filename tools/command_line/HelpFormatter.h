#pragma once

// Help for terminals that are 80 columns wide.

#include <CLI/CLI.hpp>
#include <string>

namespace tools {

class HelpFormatter : public CLI::Formatter {
  public:
    std::string make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const override;
};

}  // namespace tools
