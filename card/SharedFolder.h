#pragma once

// Taking names in a folder where everyone may create files, like /tmp. A well-known name must be taken before
// anything is written to it.

// Takes a name for an empty file that only we can read and write, replacing a file, link or pipe of ours.
// Returns false if what is there cannot be removed, as a folder cannot.
[[nodiscard]] bool TakeFile(const char* path);

// Takes a name for an empty folder that only we can enter, replacing anything of ours, even while another
// process is removing it, too. Returns false if something remains. What belongs to another user is left
// alone.
[[nodiscard]] bool TakeFolder(const char* path);
