#include "simulator/storage/JsonObject.h"

#include <charconv>
#include <utility>

#include "files/UserError.h"

namespace simulator {

JsonObject::JsonObject(const Json& json, std::string path) : json_(json), path_(std::move(path)) {
    if (!json_.is_object()) {
        throw files::UserError((path_.empty() ? "the file" : path_) + " is not an object.");
    }
}

void JsonObject::complain(const std::string& key, const std::string& what) const {
    throw files::UserError(pathOf(key) + " " + what);
}

const JsonObject::Json& JsonObject::at(const std::string& key) {
    read_.insert(key);
    const auto found = json_.find(key);
    if (found == json_.end()) {
        complain(key, "is missing.");
    }
    return *found;
}

std::vector<JsonObject> JsonObject::objects(const std::string& key) {
    if (!at(key).is_array()) {
        complain(key, "is not a list.");
    }
    std::vector<JsonObject> objects;
    for (const Json& json : at(key)) {
        objects.emplace_back(json, pathOf(key) + '[' + std::to_string(objects.size()) + ']');
    }
    return objects;
}

bool JsonObject::flag(const std::string& key) {
    if (!at(key).is_boolean()) {
        complain(key, "is neither true nor false.");
    }
    return at(key).get<bool>();
}

std::string JsonObject::text(const std::string& key) {
    if (!at(key).is_string()) {
        complain(key, "is not a text.");
    }
    return at(key).get<std::string>();
}

std::vector<uint8_t> JsonObject::hexadecimal(const std::string& key, std::size_t bytes) {
    const std::string digits = text(key);
    std::vector<uint8_t> content(bytes);
    bool good = digits.size() == 2 * bytes;
    for (std::size_t i = 0; good && i < bytes; ++i) {
        const char* const pair = digits.data() + 2 * i;
        good = std::from_chars(pair, pair + 2, content[i], 16).ptr == pair + 2;
    }
    if (!good) {
        complain(key, "is not " + std::to_string(bytes) + " bytes in hexadecimal.");
    }
    return content;
}

void JsonObject::nothingElse() const {
    for (const auto& [key, value] : json_.items()) {
        if (!read_.contains(key)) {
            complain(key, "is a field that this program does not know.");
        }
    }
}

std::string JsonObject::pathOf(const std::string& key) const {
    return path_.empty() ? key : path_ + '.' + key;
}

}  // namespace simulator
