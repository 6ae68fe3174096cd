#pragma once

// The Core Foundation objects that the services create and read.

#include <CoreFoundation/CoreFoundation.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace CFObjects {

// Each returns a new object, which the caller releases. An array owns its elements.
CFMutableDictionaryRef addDictionary(std::string text);
CFURLRef addURL(const std::filesystem::path& path);
CFArrayRef addArray(std::vector<CFTypeRef> elements);

// A string's characters, a URL's path or a dictionary's class name; nothing if the object is not alive.
std::optional<std::string> text(CFTypeRef object);

}  // namespace CFObjects
