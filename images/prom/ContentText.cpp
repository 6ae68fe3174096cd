#include "images/prom/ContentText.h"

#include "images/BoardRevision.h"
#include "images/ByteText.h"
#include "images/CardModels.h"
#include "images/FirmwareDate.h"

namespace images {
namespace {

std::string firmwareText(const simulator::FpgaConfiguration& configuration) {
    return configuration.flavour + std::to_string(configuration.version);
}

nlohmann::ordered_json orNull(const std::optional<std::string>& text) {
    return text ? nlohmann::ordered_json(*text) : nullptr;
}

}  // namespace

std::string modelText(uint8_t code) {
    const CardModel* const model = modelCoded(code);
    return model != nullptr ? std::string(model->name) : "model " + hexadecimalText(code, 2);
}

std::string boardText(uint8_t revision) {
    if (revision == 0) {
        return "board without revision";
    }
    const auto letter = boardRevisionName(revision);
    return letter ? "board " + *letter : "board revision " + std::to_string(revision);
}

std::string contentText(const std::optional<simulator::FpgaConfiguration>& configuration) {
    if (!configuration) {
        return "no configuration";
    }
    return modelText(configuration->modelCode) + ", " + boardText(configuration->boardRevision) +
           ", firmware " + firmwareText(*configuration) + " of " +
           firmwareDateText(configuration->date).value_or("date " + hexadecimalText(configuration->date, 4));
}

nlohmann::ordered_json contentJson(const std::optional<simulator::FpgaConfiguration>& configuration) {
    if (!configuration) {
        return nullptr;
    }
    const CardModel* const model = modelCoded(configuration->modelCode);
    return {{"model", orNull(model != nullptr ? std::optional(std::string(model->name)) : std::nullopt)},
            {"board", orNull(boardRevisionName(configuration->boardRevision))},
            {"firmware", firmwareText(*configuration)},
            {"date", orNull(firmwareDateText(configuration->date))}};
}

}  // namespace images
