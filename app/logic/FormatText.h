#pragma once

// printf into a string, for the short texts that the program shows.

#include <string>

[[gnu::format(printf, 1, 2)]] std::string FormatText(const char* format, ...);
