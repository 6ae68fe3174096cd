#pragma once

// JSON as the tools print it.

#include <nlohmann/json.hpp>
#include <ostream>

namespace tools {

// Names of files need not be UTF-8; what is not becomes U+FFFD.
inline void writeJson(const nlohmann::ordered_json& value, std::ostream& out) {
    constexpr int kIndent = 2;
    out << value.dump(kIndent, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

}  // namespace tools
