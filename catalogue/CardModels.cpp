#include "catalogue/CardModels.h"

#include <algorithm>

namespace catalogue {
namespace {

static_assert(std::ranges::adjacent_find(kCardModels, [](const CardModel& model, const CardModel& next) {
                  return next.code != model.code + 1;
              }) == kCardModels.end());

}  // namespace

std::string modelName(uint16_t code) {
    if (const CardModel* const model = modelByCode(code)) {
        return std::string(model->name);
    }
    return std::string("VornMX-") + static_cast<char>(code + kVariantLetterAboveCode);
}

std::string modelNames() {
    std::string text;
    for (const CardModel& model : kCardModels) {
        text.append(text.empty() ? "" : ", ").append(model.name);
        if (model.shortName != model.name) {
            text.append(" or ").append(model.shortName);
        }
    }
    return text;
}

std::string modelForm() {
    return "A model is one of " + modelNames() + ".";
}

}  // namespace catalogue
