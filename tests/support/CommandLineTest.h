#pragma once

// A command line tool in a fresh folder, which file names on its command lines are relative to.

#include <gtest/gtest.h>

#include <filesystem>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/TemporaryDirectory.h"

class CommandLineTest : public testing::Test {
  protected:
    using Tool = int (*)(const std::vector<std::string>&, std::ostream&, std::ostream&);

    struct Step {
        std::string line;  // words, in quotation marks where they hold spaces or nothing
        int exitCode = 0;
        std::vector<std::string> texts = {};  // in what the tool says
    };

    explicit CommandLineTest(Tool tool) : tool_(tool) { std::filesystem::current_path(directory_.path()); }
    ~CommandLineTest() override { std::filesystem::current_path(before_); }

    // Runs one line after the other. Only a line that is wrong or fails complains.
    void follow(const std::vector<Step>& steps) {
        for (const Step& step : steps) {
            std::vector<std::string> arguments;
            std::istringstream line(step.line);
            for (std::string word; line >> std::quoted(word);) {
                arguments.push_back(word);
            }
            std::ostringstream out;
            std::ostringstream err;
            EXPECT_EQ(tool_(arguments, out, err), step.exitCode) << step.line;
            EXPECT_EQ(err.str().empty(), step.exitCode != 1 && step.exitCode != 2) << step.line << err.str();
            said_ = out.str() + err.str();
            for (const std::string& text : step.texts) {
                EXPECT_TRUE(says(text)) << step.line << ": " << text << "\n" << said_;
            }
        }
    }
    bool says(const std::string& text) const { return said_.find(text) != std::string::npos; }

  private:
    Tool tool_;
    const std::filesystem::path before_ = std::filesystem::current_path();
    const TemporaryDirectory directory_;
    std::string said_;
};
