#pragma once

// Taking names in a folder where everyone may create files, like /tmp.
//
// Another user may create a well-known name first: as a link to one of our files, as a pipe on which we would
// wait for ever, or as a file or folder that stays under their control. So a name is taken before anything is
// written to it. In a sticky folder such as /tmp, only root and we can remove or rename what we have taken.

// Takes a name for an empty file that only we can read and write, replacing a file, link or pipe of ours.
// Returns false if what is there cannot be removed, as a folder cannot.
[[nodiscard]] bool TakeFile(const char* path);

// Takes a name for an empty folder that only we can enter, replacing anything of ours, even while another
// process is removing it, too. Returns false if something remains. What belongs to another user is left
// alone.
[[nodiscard]] bool TakeFolder(const char* path);
