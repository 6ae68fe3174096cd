#include "platform/CFObjects.h"

#include <map>
#include <memory>
#include <utility>

namespace CFObjects {
namespace {

struct Object {
    std::string text;
    std::vector<CFTypeRef> elements;
    CFIndex references = 1;
};

// An object's address is its identity: a stale or foreign pointer is looked up here and found missing, never
// followed.
std::map<CFTypeRef, std::unique_ptr<Object>>& liveObjects() {
    static std::map<CFTypeRef, std::unique_ptr<Object>> objects;
    return objects;
}

Object* find(CFTypeRef object) {
    const auto entry = liveObjects().find(object);
    return entry == liveObjects().end() ? nullptr : entry->second.get();
}

Object* add(std::string text, std::vector<CFTypeRef> elements = {}) {
    auto object = std::make_unique<Object>(Object{std::move(text), std::move(elements)});
    Object* const address = object.get();
    liveObjects().emplace(address, std::move(object));
    return address;
}

}  // namespace

CFMutableDictionaryRef addDictionary(std::string text) {
    return reinterpret_cast<CFMutableDictionaryRef>(add(std::move(text)));
}

CFURLRef addURL(const std::filesystem::path& path) {
    return reinterpret_cast<CFURLRef>(add(path.string()));
}

CFArrayRef addArray(std::vector<CFTypeRef> elements) {
    return reinterpret_cast<CFArrayRef>(add({}, std::move(elements)));
}

std::optional<std::string> text(CFTypeRef object) {
    const Object* const found = find(object);
    return found == nullptr ? std::nullopt : std::optional(found->text);
}

std::size_t countLive() {
    return liveObjects().size();
}

}  // namespace CFObjects

using CFObjects::find;

CFTypeRef CFRetain(CFTypeRef object) {
    if (auto* const found = find(object)) {
        ++found->references;
    }
    return object;
}

void CFRelease(CFTypeRef object) {
    auto* const found = find(object);
    if (found == nullptr || --found->references != 0) {
        return;
    }
    const std::vector<CFTypeRef> elements = std::move(found->elements);
    CFObjects::liveObjects().erase(object);
    for (const CFTypeRef element : elements) {
        CFRelease(element);
    }
}

CFIndex CFGetRetainCount(CFTypeRef object) {
    const auto* const found = find(object);
    return found == nullptr ? 0 : found->references;
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
