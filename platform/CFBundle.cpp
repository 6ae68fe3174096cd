// Bundles on a file system: Contents/Resources holds the resources, a file's extension is its type.

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/CFObjects.h"
#include "platform/Host.h"
#include "platform/ServiceTables.h"

namespace {

const char* constantText(CFStringRef string) {
    return reinterpret_cast<const char*>(string);
}

std::filesystem::path resourceFolder(CFBundleRef bundle) {
    return *reinterpret_cast<const std::filesystem::path*>(bundle) / "Contents" / "Resources";
}

std::filesystem::path resourceFolder(CFBundleRef bundle, CFStringRef subdirectory) {
    const auto folder = resourceFolder(bundle);
    return subdirectory == nullptr ? folder : folder / constantText(subdirectory);
}

}  // namespace

CFBundleRef CFBundleGetMainBundle() {
    std::filesystem::path& bundle = platform::Tables().mainBundle;
    bundle = InstalledHost().bundleDirectory();
    return bundle.empty() ? nullptr : reinterpret_cast<CFBundleRef>(&bundle);
}

CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle) {
    return CFObjects::addURL(resourceFolder(bundle));
}

CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                                 CFStringRef subdirectory) {
    const std::string extension = type == nullptr ? "" : std::string(".") + constantText(type);
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
        if (entry->path().extension() == std::string(".") + constantText(type)) {
            paths.push_back(entry->path());
        }
    }
    if (error) {
        return nullptr;
    }
    std::ranges::sort(paths);
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
