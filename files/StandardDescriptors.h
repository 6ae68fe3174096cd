#pragma once

// Standard input, output and error of a process that was started without them.

namespace files {

// Takes the number of each that is closed. A file or connection with such a number would receive messages
// meant for the user, and a child would take it for its own. Reading from it or writing to it still fails.
// main calls this before anything is opened.
void reserveStandardDescriptors();

}  // namespace files
