#pragma once

// New contents for several files of a folder that take effect together: all of them or, whatever fails and
// whenever the program is killed, none.
//
//   .saving/   what is being put together; worth nothing if it is left behind
//   .saved/    complete, and on its way into the folder; whoever comes across it goes on with it
//
// The name of the inner folder changes from the first to the second in one step. The caller holds the
// folder's lock for writing. Failures are FileError.

#include <cstdint>
#include <span>
#include <string>

#include "files/Folder.h"

namespace files {

class Commit {
  public:
    // Finishes or takes away what was left behind. The file of the name `first` is the first to get into its
    // place. The folder must outlive the commit.
    Commit(const Folder& folder, std::string first);
    Commit(const Commit&) = delete;
    Commit& operator=(const Commit&) = delete;
    ~Commit();

    // Complaints call the file by its name in the folder. A file that is there hands down mode and owner.
    void put(const std::string& name, std::span<const uint8_t> content);
    // Has everything take effect.
    void take();

  private:
    const Folder& folder_;
    std::string first_;
    Folder inner_;
    bool isTaken_ = false;
};

// Has what an earlier commit completed in its place, and takes away what it did not complete. In the order of
// a commit, since this can be killed as well.
void recover(const Folder& folder, const std::string& first);

// An ordinary file as the last complete commit left it, also while another one is under way.
[[nodiscard]] OpenFile committedFile(const Folder& folder, const std::string& name);

// Whether a name is one of the two above.
[[nodiscard]] bool belongsToCommits(const std::string& name);

}  // namespace files
