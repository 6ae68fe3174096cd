#pragma once

// Taking names in a folder where everyone may create files, like /tmp.
//
// Another user may get to a well-known name first and put a link to one of our files there, a pipe on which
// we would wait for ever, or a file or folder that he goes on writing to. So a name is taken before anything
// is written to it. In a sticky folder, as /tmp is, only root and we can remove or rename what we have taken.

// Takes a name for an empty file that only we can read and write, replacing a file, link or pipe of ours.
// False if what is there cannot be removed; a folder cannot.
bool TakeFile(const char* path);

// Takes a name for an empty folder that only we can enter, replacing whatever of ours was there, even while
// another process is removing that, too. False if something remains; what belongs to another user is left as
// it is.
bool TakeFolder(const char* path);
