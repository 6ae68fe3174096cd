#pragma once

// A folder that is opened once, by name, and from then on reached by its descriptor: whatever its name comes
// to mean, these are the files of the folder that was opened.
//
// Its files are ordinary ones: a link is not followed and a pipe is not waited for, both are failures.
// Failures are FileError.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "files/OpenFile.h"

namespace files {

class Folder {
  public:
    enum class Purpose { reading, writing };

    // The name may be a link to a folder.
    explicit Folder(const std::filesystem::path& path);
    // One that is open already.
    explicit Folder(OpenFile opened) : opened_(std::move(opened)) {}

    // A folder in this one; nothing when there is nothing of that name.
    [[nodiscard]] std::optional<Folder> inner(const std::string& name) const;

    // What complaints call the folder, and one of its files.
    [[nodiscard]] const std::filesystem::path& path() const { return opened_.name(); }
    [[nodiscard]] std::filesystem::path pathOf(const std::string& name) const {
        return opened_.name() / name;
    }
    // Whether a path leads to this folder now.
    [[nodiscard]] bool isAt(const std::filesystem::path& path) const;

    // Whether a path leads to one of its files now.
    [[nodiscard]] bool isFileAt(const std::string& name, const std::filesystem::path& path) const;

    // Everything in it.
    [[nodiscard]] std::vector<std::string> names() const;
    // What is there under a name, links not followed; nothing when nothing is.
    [[nodiscard]] std::optional<struct stat> status(const std::string& name) const;

    // An ordinary file that is there.
    [[nodiscard]] OpenFile file(const std::string& name, Purpose purpose) const;
    // A new file with a content, which is on the disk when this returns. It gets mode and owner of `like`, if
    // that is a file and as far as the system permits it. Complaints call it `knownAs`.
    void create(const std::string& name, std::span<const uint8_t> content,
                const std::optional<struct stat>& like, const std::filesystem::path& knownAs) const;
    void createInner(const std::string& name) const;

    // Moves a file whole into another folder, in place of whatever has its name there, unless that is a
    // folder.
    void move(const std::string& name, const Folder& into) const;
    // The same within the folder, to another name. Complaints call the file `knownAs`.
    void rename(const std::string& from, const std::string& to, const std::filesystem::path& knownAs) const;
    void remove(const std::string& name) const;
    // An empty one.
    void removeInner(const std::string& name) const;

    // Programs that write exclude each other and those that read; a writer waits for readers, who are quick.
    // False when another program is writing, or reads for longer than that. The lock ends with the Folder.
    [[nodiscard]] bool lock(Purpose purpose) const;
    void unlock() const;

  private:
    OpenFile opened_;
};

}  // namespace files
