#pragma once

// How long it takes to write a firmware image into a card.

#include <chrono>
#include <optional>
#include <string>

// A sentence such as "Writing takes about a minute and a half.", worked out from the image and from how long
// a load takes; without that, from the third of a microsecond that it takes at least. Empty unless the path
// is that of a regular file of at most 16 MiB with an image that plays to its end.
std::string WriteTimeText(const char* imagePath, std::optional<std::chrono::nanoseconds> loadTime = {});

// Seconds, rounded as a person would say it: "about a minute and a half".
std::string RoundedDuration(double seconds);
