#include "linux/pci/CardRuleFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>
#include <vector>

#include "files/FileError.h"
#include "files/Folder.h"

namespace pci {
namespace {

constexpr std::string_view kEnding = ".conf";

void refuseUntrusted(const std::filesystem::path& name, const struct stat& status, uid_t trustedOwner) {
    if (status.st_uid != trustedOwner || (status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
        throw files::FileError(name,
                               "was not read, because users other than the administrator can change it");
    }
}

void readFile(const files::Folder& folder, const std::string& name, uid_t trustedOwner, CardRules& rules) {
    const files::OpenFile file = folder.file(name, files::Folder::Purpose::reading);
    const struct stat status = file.status();
    refuseUntrusted(file.name(), status, trustedOwner);
    if (status.st_size > static_cast<off_t>(kMostRuleFileBytes)) {
        throw files::FileError(file.name(),
                               "is longer than " + std::to_string(kMostRuleFileBytes) + " bytes");
    }
    const std::vector<uint8_t> content = file.read();
    parseCardRules({reinterpret_cast<const char*>(content.data()), content.size()}, file.name(), rules);
}

std::vector<std::string> ruleFiles(const files::Folder& folder, CardRules& rules) {
    std::vector<std::string> names = folder.names();
    std::erase_if(names,
                  [](const std::string& name) { return name.starts_with('.') || !name.ends_with(kEnding); });
    std::ranges::sort(names);
    if (names.size() > kMostRuleFiles) {
        rules.complain(folder.path().string() + ": has more than " + std::to_string(kMostRuleFiles) +
                       " files; those after " + names[kMostRuleFiles - 1] + " were not read.");
        names.resize(kMostRuleFiles);
    }
    return names;
}

void readFolder(const std::filesystem::path& path, uid_t trustedOwner, CardRules& rules) {
    files::OpenFile opened(AT_FDCWD, path, O_RDONLY | O_DIRECTORY, path);
    refuseUntrusted(path, opened.status(), trustedOwner);
    const files::Folder folder(std::move(opened));
    for (const std::string& name : ruleFiles(folder, rules)) {
        try {
            readFile(folder, name, trustedOwner, rules);
        } catch (const files::FileError& error) {
            rules.complain(error.what());
        }
    }
}

}  // namespace

CardRules readCardRules(const std::filesystem::path& folder, uid_t trustedOwner) {
    CardRules rules;
    try {
        readFolder(folder, trustedOwner, rules);
    } catch (const files::FileError& error) {
        if (error.systemError() != ENOENT) {
            rules.complain(error.what());
        }
    }
    return rules;
}

}  // namespace pci
