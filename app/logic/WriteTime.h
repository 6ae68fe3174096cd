#pragma once

// How long it takes to write a firmware image into a card.

#include <string>

// A sentence for people, such as "Writing takes about a minute and a half."; empty for what is no
// regular file of at most 16 MiB that holds an image which comes to its end. Worked out from the image
// itself, whatever the card's machine makes of it.
std::string WriteTimeText(const char* imagePath);

// "about a minute and a half": seconds, rounded as a person would say it.
std::string RoundedDuration(double seconds);
