#pragma once

// The card models: what people, cards and the names of firmware images call them. A new model is one row in
// this table. The build fails if the arithmetic in ImageName.cpp does not decode its tag to its code.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace catalogue {

struct CardModel {
    std::string_view name;
    std::string_view shortName;  // the name again for a model without one
    std::string_view tag;        // begins the names of the model's firmware images
    uint8_t code;                // in the device ID register and in the card's identity
};

// In the order of the codes, which leave no gaps.
inline constexpr auto kCardModels = std::to_array<CardModel>({
    {"VornMX-A", "VornMX-A", "VMA", 0x20},
    {"VornMX-B", "VornMX-B", "VMB", 0x21},
    {"VornMX-C", "VornMX-C", "VMC", 0x22},
    {"Vorn K40", "K40", "K40", 0x23},
    {"Vorn DX8", "DX8", "DX8", 0x24},
    {"Vorn DX8-XS", "DX8-XS", "DSX", 0x25},
});

inline constexpr uint8_t kFirstModelCode = kCardModels.front().code;
inline constexpr uint8_t kLastModelCode = kCardModels.back().code;

// The letter of a VornMX variant, at the end of its name and of its tag, lies this far above its code.
inline constexpr int kVariantLetterAboveCode = 'A' - 0x20;

// The model of that code, or null.
constexpr const CardModel* modelByCode(uint32_t code) {
    for (const CardModel& model : kCardModels) {
        if (model.code == code) {
            return &model;
        }
    }
    return nullptr;
}

// The model of that name or short name, or null.
constexpr const CardModel* modelByName(std::string_view name) {
    for (const CardModel& model : kCardModels) {
        if (model.name == name || model.shortName == name) {
            return &model;
        }
    }
    return nullptr;
}

constexpr bool isModelCode(uint32_t code) {
    return modelByCode(code) != nullptr;
}

// "Vorn K40". A code that no model has reads as a further variant of the VornMX: 0x26 is "VornMX-G".
std::string modelName(uint16_t code);

// The names that modelByName takes: "VornMX-A, ..., Vorn K40 or K40, ...".
std::string modelNames();

// The same as a sentence.
std::string modelForm();

}  // namespace catalogue
