#include "simulator/DriverBundle.h"

#include <pugixml.hpp>
#include <string_view>

namespace simulator {
namespace {

// The value of a key in a property list's dictionary, which holds keys and values in turn; a null node when
// it has no such key.
pugi::xml_node valueOf(const pugi::xml_node& dictionary, std::string_view key) {
    for (const pugi::xml_node& node : dictionary.children("key")) {
        if (node.text().get() == key)
            return node.next_sibling();
    }
    return {};
}

std::string textOf(const pugi::xml_node& value) {
    return std::string_view(value.name()) == "string" ? value.text().get() : "";
}

}  // namespace

std::optional<DriverBundle> readDriverBundle(const std::filesystem::path& folder) {
    pugi::xml_document document;
    if (!document.load_file((folder / "Contents" / "Info.plist").c_str()))
        return std::nullopt;
    const pugi::xml_node properties = document.child("plist").child("dict");
    const DriverBundle bundle{
        .identifier = textOf(valueOf(properties, "CFBundleIdentifier")),
        .serviceClass = textOf(valueOf(valueOf(properties, "IOKitPersonalities").child("dict"), "IOClass"))};
    if (textOf(valueOf(properties, "CFBundlePackageType")) != "KEXT" || bundle.identifier.empty() ||
        bundle.serviceClass.empty())
        return std::nullopt;
    return bundle;
}

}  // namespace simulator
