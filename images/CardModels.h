#pragma once

// The card models: what people, image files and the device ID register call them.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace images {

struct CardModel {
    std::string_view name;
    std::string_view shortName;  // the name again for a model without one
    std::string_view tag;        // in the names of image files
    uint8_t code;                // in the device ID register
};

inline constexpr std::array<CardModel, 6> kCardModels = {{
    {"VornMX-A", "VornMX-A", "VMA", 0x20},
    {"VornMX-B", "VornMX-B", "VMB", 0x21},
    {"VornMX-C", "VornMX-C", "VMC", 0x22},
    {"Vorn K40", "K40", "K40", 0x23},
    {"Vorn DX8", "DX8", "DX8", 0x24},
    {"Vorn DX8-XS", "DX8-XS", "DSX", 0x25},
}};

// The model of that name or short name, or null.
[[nodiscard]] constexpr const CardModel* modelNamed(std::string_view name) {
    for (const CardModel& model : kCardModels) {
        if (name == model.name || name == model.shortName) {
            return &model;
        }
    }
    return nullptr;
}

// The model of that code, or null.
[[nodiscard]] constexpr const CardModel* modelCoded(uint8_t code) {
    for (const CardModel& model : kCardModels) {
        if (code == model.code) {
            return &model;
        }
    }
    return nullptr;
}

// The names that modelNamed takes: "VornMX-A, ..., Vorn K40 or K40, ...".
[[nodiscard]] inline std::string modelNames() {
    std::string text;
    for (const CardModel& model : kCardModels) {
        text.append(text.empty() ? "" : ", ").append(model.name);
        if (model.shortName != model.name) {
            text.append(" or ").append(model.shortName);
        }
    }
    return text;
}

// The same in a sentence.
[[nodiscard]] inline std::string modelForm() {
    return "A model is one of " + modelNames() + ".";
}

}  // namespace images
