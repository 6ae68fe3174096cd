#pragma once

// Help that fits a terminal of 80 columns.

#include <CLI/CLI.hpp>
#include <string>

namespace tools {

class HelpFormatter : public CLI::Formatter {
  public:
    [[nodiscard]] std::string make_help(const CLI::App* app, std::string name,
                                        CLI::AppFormatMode mode) const override;
};

}  // namespace tools
