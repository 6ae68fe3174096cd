#include "simulator/host/DriverBundle.h"

#include <rapidxml/rapidxml.hpp>
#include <string_view>
#include <vector>

#include "files/FileError.h"
#include "files/Folder.h"

namespace simulator {
namespace {

using Element = rapidxml::xml_node<>;

// Far more than any driver needs. The parser recurses into nested elements, so a longer text could overflow
// the stack.
constexpr std::size_t kLongestPropertyList = 16384;

std::string_view nameOf(const Element* element) {
    return element == nullptr ? std::string_view() : std::string_view(element->name(), element->name_size());
}

std::string textOf(const Element* value) {
    return nameOf(value) == "string" ? std::string(value->value(), value->value_size()) : "";
}

const Element* child(const Element* parent, const char* name) {
    return parent == nullptr ? nullptr : parent->first_node(name);
}

// The value of a key in a property list's dictionary, where each key is followed by its value. Null if there
// is no such key or no dictionary.
const Element* valueOf(const Element* dictionary, std::string_view key) {
    for (const Element* node = child(dictionary, "key"); node != nullptr; node = node->next_sibling("key")) {
        if (std::string_view(node->value(), node->value_size()) == key) {
            return node->next_sibling();
        }
    }
    return nullptr;
}

DriverBundle read(const Element* properties) {
    if (textOf(valueOf(properties, "CFBundlePackageType")) != "KEXT") {
        return {};
    }
    return {
        .identifier = textOf(valueOf(properties, "CFBundleIdentifier")),
        .serviceClass = textOf(valueOf(child(valueOf(properties, "IOKitPersonalities"), "dict"), "IOClass"))};
}

}  // namespace

std::optional<DriverBundle> readDriverBundle(const std::filesystem::path& folder) {
    try {
        std::vector<uint8_t> text =
            files::Folder(folder / "Contents").file("Info.plist", files::Folder::Purpose::reading).read();
        if (text.size() > kLongestPropertyList) {
            return std::nullopt;
        }
        text.push_back(0);
        // Parses in place: names and values are parts of the text.
        rapidxml::xml_document<> document;
        document.parse<rapidxml::parse_validate_closing_tags>(reinterpret_cast<char*>(text.data()));
        DriverBundle bundle = read(child(child(&document, "plist"), "dict"));
        if (bundle.identifier.empty() || bundle.serviceClass.empty()) {
            return std::nullopt;
        }
        return bundle;
    } catch (const files::FileError&) {
        return std::nullopt;
    } catch (const rapidxml::parse_error&) {
        return std::nullopt;
    }
}

}  // namespace simulator
