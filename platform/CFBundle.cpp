// Bundles on a file system: Contents/Resources holds the resources, a file's extension is its type.

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "platform/CFObjects.h"
#include "platform/Host.h"

namespace {

// Constant strings live as long as the process, like those of a compiler.
std::map<std::string, std::string>& constantStrings() {
    static std::map<std::string, std::string> strings;
    return strings;
}

const std::string& constantText(CFStringRef string) {
    return *reinterpret_cast<const std::string*>(string);
}

// The one bundle that can be asked for. It is not counted: a Get function hands it out and nobody releases
// it.
std::filesystem::path gMainBundle;

std::filesystem::path resourceFolder(CFBundleRef bundle) {
    return *reinterpret_cast<const std::filesystem::path*>(bundle) / "Contents" / "Resources";
}

std::filesystem::path resourceFolder(CFBundleRef bundle, CFStringRef subdirectory) {
    const auto folder = resourceFolder(bundle);
    return subdirectory == nullptr ? folder : folder / constantText(subdirectory);
}

}  // namespace

CFStringRef CFSTR(const char* text) {
    const auto entry = constantStrings().try_emplace(text, text).first;
    return reinterpret_cast<CFStringRef>(&entry->second);
}

CFBundleRef CFBundleGetMainBundle() {
    gMainBundle = InstalledHost().bundleDirectory();
    return gMainBundle.empty() ? nullptr : reinterpret_cast<CFBundleRef>(&gMainBundle);
}

CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle) {
    return CFObjects::addURL(resourceFolder(bundle));
}

CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                                 CFStringRef subdirectory) {
    const std::string extension = type == nullptr ? "" : "." + constantText(type);
    const auto path = resourceFolder(bundle, subdirectory) / (constantText(name) + extension);
    std::error_code error;
    return std::filesystem::exists(path, error) ? CFObjects::addURL(path) : nullptr;
}

CFArrayRef CFBundleCopyResourceURLsOfType(CFBundleRef bundle, CFStringRef type, CFStringRef subdirectory) {
    const auto folder = resourceFolder(bundle, subdirectory);
    std::error_code error;
    std::vector<std::filesystem::path> paths;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->path().extension() == "." + constantText(type)) {
            paths.push_back(entry->path());
        }
    }
    if (error) {
        return nullptr;
    }
    std::sort(paths.begin(), paths.end());
    std::vector<CFTypeRef> urls;
    urls.reserve(paths.size());
    for (const auto& path : paths) {
        urls.push_back(CFObjects::addURL(path));
    }
    return CFObjects::addArray(std::move(urls));
}

Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean /*resolveAgainstBase*/, uint8_t* buffer,
                                         CFIndex bufferBytes) {
    const auto path = CFObjects::text(url);
    if (!path || bufferBytes < 0 || path->size() >= static_cast<std::size_t>(bufferBytes)) {
        return 0;
    }
    std::memcpy(buffer, path->c_str(), path->size() + 1);
    return 1;
}
