#pragma once

// A folder that is opened by name once and then reached by its descriptor, so its files stay those of the
// folder that was opened, whatever happens to the name.
//
// The files are ordinary ones; links and pipes are refused. Failures are FileError.

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
    // A folder that is already open.
    explicit Folder(OpenFile opened) : opened_(std::move(opened)) {}

    // A folder in this one, or nothing if there is none of that name.
    std::optional<Folder> inner(const std::string& name) const;

    // The names of the folder and of one of its files in messages.
    const std::filesystem::path& path() const { return opened_.name(); }
    std::filesystem::path pathOf(const std::string& name) const { return opened_.name() / name; }
    // Whether a path leads to this folder now.
    bool isAt(const std::filesystem::path& path) const;

    // Whether a path leads to one of its files now.
    bool isFileAt(const std::string& name, const std::filesystem::path& path) const;

    // The names of everything in the folder.
    std::vector<std::string> names() const;
    // What a name stands for, without following links; nothing if there is none of that name.
    std::optional<struct stat> status(const std::string& name) const;

    // An existing ordinary file.
    OpenFile file(const std::string& name, Purpose purpose) const;
    // Creates a file; its content is on the disk when this returns. If `like` is a file, the new one takes
    // over its mode and, where the system permits, its owner. Messages call the new file `knownAs`.
    void create(const std::string& name, std::span<const uint8_t> content,
                const std::optional<struct stat>& like, const std::filesystem::path& knownAs) const;
    void createInner(const std::string& name) const;

    // Moves a file into another folder in one step. It replaces what has its name there, unless that is a
    // folder.
    void move(const std::string& name, const Folder& into) const;
    // The same within the folder, to another name. Messages call the file `knownAs`.
    void rename(const std::string& from, const std::string& to, const std::filesystem::path& knownAs) const;
    void remove(const std::string& name) const;
    // Removes an empty folder.
    void removeInner(const std::string& name) const;

    // A program that writes excludes all others. A writer waits up to two seconds for readers, which are
    // quick. False if another program is writing, or keeps reading for longer. The lock ends with the Folder.
    [[nodiscard]] bool lock(Purpose purpose) const;
    void unlock() const;

  private:
    OpenFile opened_;
};

}  // namespace files
