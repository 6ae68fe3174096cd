#pragma once

// Names of our own in a folder where everybody may create files, like /tmp.
//
// Whoever is first there decides what a well-known name stands for: a link to one of our files, a pipe on
// which we would wait for ever, a file or folder that somebody else goes on writing to. So a name is taken
// before anything is written to it. In a sticky folder, as /tmp is, nobody but root and ourselves can remove
// or rename what we have taken.

// Takes a name for an empty file that only we can read and write, in place of a file, link or pipe of ours.
// False if something is there that cannot be removed, a folder among others.
bool TakeFile(const char* path);

// Takes a name for an empty folder that only we can enter, in place of whatever of ours was there, even if
// somebody else is removing that, too. False if something stays there; what belongs to somebody else is left
// as it is.
bool TakeFolder(const char* path);
