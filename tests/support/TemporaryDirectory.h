#pragma once

// A new directory that is removed with the object.

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

class TemporaryDirectory {
  public:
    TemporaryDirectory() {
        std::string name = std::filesystem::temp_directory_path() / "vupdater-test-XXXXXX";
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("The temporary directory could not be created: " + name);
        }
        path_ = name;
    }
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};
