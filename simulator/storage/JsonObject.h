#pragma once

// One JSON object while it is being read. Every function that finds something other than what it expects
// throws files::UserError, in a sentence that begins with the field's path, such as cards[2].prom.address.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

class JsonObject {
  public:
    using Json = nlohmann::json;

    // The JSON must outlive this object. The path is empty for a file's outermost object.
    JsonObject(const Json& json, std::string path);

    // Throws a sentence made of the field's path and `what`, which begins with a verb and ends with a full
    // stop.
    [[noreturn]] void complain(const std::string& key, const std::string& what) const;

    // Whether there is such a field, for those that may be missing. All other functions require theirs.
    bool has(const std::string& key) const { return json_.contains(key); }

    const Json& at(const std::string& key);
    // Parts of this object's JSON, which must outlive them. Call nothingElse() on each of them, too.
    JsonObject object(const std::string& key) { return {at(key), pathOf(key)}; }
    std::vector<JsonObject> objects(const std::string& key);
    bool flag(const std::string& key);
    std::string text(const std::string& key);
    // A text of exactly two digits for each of the bytes, in either case.
    std::vector<uint8_t> hexadecimal(const std::string& key, std::size_t bytes);

    // A whole number from `least` to `most`, both included.
    template <typename Number>
    Number number(const std::string& key, Number least = 0,
                  Number most = std::numeric_limits<Number>::max()) {
        const Json& json = at(key);
        if (!json.is_number_unsigned() || json.get<uint64_t>() < least || json.get<uint64_t>() > most) {
            complain(key, "is not a whole number from " + std::to_string(least) + " to " +
                              std::to_string(most) + ".");
        }
        return json.get<Number>();
    }

    // An enumerator by its name; `names` has them in the order of the enumeration.
    template <typename Enumeration, std::size_t count>
    Enumeration oneOf(const std::string& key, const std::array<std::string_view, count>& names) {
        const auto* found = std::ranges::find(names, text(key));
        if (found == names.end()) {
            complain(key, "is not a word that this program knows.");
        }
        return static_cast<Enumeration>(found - names.begin());
    }

    // Throws if the object has a field that was never asked for. Call when everything has been read.
    void nothingElse() const;

  private:
    std::string pathOf(const std::string& key) const;

    const Json& json_;
    std::string path_;
    std::set<std::string> read_;
};

}  // namespace simulator
