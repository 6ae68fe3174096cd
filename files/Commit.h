#pragma once

// Replaces several files of a folder together: either all of them or, if something fails or the program is
// killed, none.
//
//   .saving/   holds new files until all of them are written; deleted if it is left over
//   .saved/    holds complete files until each is moved into the folder; if it is left over, the next program
//              that writes finishes moving them
//
// Renaming the first to the second is the moment at which all files take effect. The caller holds the
// folder's lock for writing. Failures are FileError.

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

#include "files/Folder.h"

namespace files {

class Commit {
  public:
    // Recovers first (see recover below). The file named `first` is the first that is moved into place. The
    // folder must outlive the commit.
    Commit(const Folder& folder, std::string first);
    Commit(const Commit&) = delete;
    Commit& operator=(const Commit&) = delete;
    ~Commit();

    // A new file takes over the mode and owner of the file that it replaces.
    void put(const std::string& name, std::span<const uint8_t> content);
    // Makes all files take effect.
    void take();

  private:
    const Folder& folder_;
    std::string first_;
    Folder inner_;
    bool isTaken_ = false;
};

// Finishes an earlier commit that took effect, and deletes one that did not. This can be interrupted as well,
// so files are moved in the order of a commit.
void recover(const Folder& folder, const std::string& first);

// An ordinary file as the last complete commit left it, even while another is under way.
OpenFile committedFile(const Folder& folder, const std::string& name);

// Whether a folder has a file of this name, even if a commit that took effect has not yet moved it into
// place.
bool isCommitted(const std::filesystem::path& folder, const std::string& name);

// Whether a name is that of one of the inner folders.
bool belongsToCommits(const std::string& name);

}  // namespace files
