#include "platform/CFObjects.h"

#include <bit>
#include <utility>

#include "platform/ServiceTables.h"

namespace CFObjects {
namespace {

platform::CFObject* find(CFTypeRef object) {
    return platform::Tables().objects.find(object);
}

CFTypeRef add(std::string text, std::vector<CFTypeRef> elements = {}) {
    return platform::Tables().objects.add({std::move(text), std::move(elements)});
}

}  // namespace

CFMutableDictionaryRef addDictionary(std::string text) {
    return std::bit_cast<CFMutableDictionaryRef>(add(std::move(text)));
}

CFURLRef addURL(const std::filesystem::path& path) {
    return static_cast<CFURLRef>(add(path.string()));
}

CFArrayRef addArray(std::vector<CFTypeRef> elements) {
    return static_cast<CFArrayRef>(add({}, std::move(elements)));
}

std::optional<std::string> text(CFTypeRef object) {
    const auto* const found = find(object);
    return found == nullptr ? std::nullopt : std::optional(found->text);
}

}  // namespace CFObjects

using CFObjects::find;

void CFRelease(CFTypeRef object) {
    auto* const found = find(object);
    if (found == nullptr) {
        return;
    }
    const std::vector<CFTypeRef> elements = std::move(found->elements);
    platform::Tables().objects.release(object);
    for (const CFTypeRef element : elements) {
        CFRelease(element);
    }
}

CFIndex CFArrayGetCount(CFArrayRef array) {
    const auto* const found = find(array);
    return found == nullptr ? 0 : static_cast<CFIndex>(found->elements.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
    const auto* const found = find(array);
    const auto position = static_cast<std::size_t>(index);
    return found == nullptr || position >= found->elements.size() ? nullptr : found->elements[position];
}
