#include "tools/command_line/HelpFormatter.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace tools {
namespace {

constexpr std::size_t kColumns = 80;

// Breaks a line at blanks and indents all but its first part.
std::string wrapped(std::string line, std::size_t indent) {
    std::string text;
    while (line.size() > kColumns) {
        const std::size_t blank = line.rfind(' ', kColumns);
        if (blank == std::string::npos || blank <= indent) {
            break;  // the word is longer than a line
        }
        text += line.substr(0, blank) + '\n';
        line = std::string(indent, ' ') + line.substr(blank + 1);
    }
    return text + line + '\n';
}

// The column where the rest of a line begins: below the description in a row of the table, else at the left.
std::size_t continuationOf(const std::string& line, std::size_t column) {
    constexpr std::size_t kRowIndent = 2;
    const std::size_t first = line.find_first_not_of(' ');
    if (first == std::string::npos || first < kRowIndent) {
        return 0;
    }
    return first >= column ? first : column + first - kRowIndent;
}

}  // namespace

std::string HelpFormatter::make_help(const CLI::App* app, std::string name, CLI::AppFormatMode mode) const {
    std::istringstream help(CLI::Formatter::make_help(app, std::move(name), mode));
    std::string text;
    for (std::string line; std::getline(help, line);) {
        text += wrapped(line, continuationOf(line, get_column_width()));
    }
    return text;
}

}  // namespace tools
