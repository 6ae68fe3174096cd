#pragma once

// A folder of the kernel's attributes, such as a device's in /sys. It is opened by name once, so it stays
// that device's even if another takes its place on the bus; after a removal nothing can be read any more.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

#include "files/OpenFile.h"

namespace pci {

class Attributes {
  public:
    // Nothing if there is no such folder.
    [[nodiscard]] static std::optional<Attributes> open(const std::filesystem::path& folder);

    // Whether the folder is still where it was opened, and no other one is. True if that is unknown.
    bool isStillThere() const;

    // Whether there is an attribute, which needs no right to read it. True if that is unknown.
    bool has(const std::string& name) const;

    // An attribute's text; nothing if it cannot be read or is longer than any attribute is.
    std::optional<std::string> text(const std::string& name) const;
    // The last part of where a link leads; nothing if there is no such link, empty if it cannot be read.
    std::optional<std::string> linkedName(const std::string& name) const;
    // False if the kernel did not take it.
    [[nodiscard]] bool writeText(const std::string& name, const std::string& text) const;

    // All bytes from an offset of a binary attribute; false if it is shorter, or the kernel did not allow it.
    [[nodiscard]] bool readAt(const std::string& name, std::size_t offset, std::span<uint8_t> bytes) const;
    [[nodiscard]] bool writeAt(const std::string& name, std::size_t offset,
                               std::span<const uint8_t> bytes) const;

    // Opens a binary attribute for mapping. Throws FileError.
    [[nodiscard]] files::OpenFile openForMapping(const std::string& name) const;

  private:
    explicit Attributes(files::OpenFile folder) : folder_(std::move(folder)) {}

    files::OpenFile folder_;
};

// Text from outside on one line of printable ASCII, cut after 60 characters, so that it can be part of a
// sentence. The system bus, which carries that sentence, would refuse text that is not UTF-8.
std::string plainText(const std::string& text);

}  // namespace pci
