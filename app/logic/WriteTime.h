#pragma once

// How long it takes to write a firmware image into a card.

#include <string>

// A sentence such as "Writing takes about a minute and a half.", worked out from the image alone. Empty
// unless the path is that of a regular file of at most 16 MiB with an image that plays to its end.
std::string WriteTimeText(const char* imagePath);

// Seconds, rounded as a person would say it: "about a minute and a half".
std::string RoundedDuration(double seconds);
