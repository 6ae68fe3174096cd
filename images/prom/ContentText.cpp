#include "images/prom/ContentText.h"

#include "catalogue/BoardRevision.h"
#include "catalogue/CardModels.h"
#include "catalogue/Dates.h"
#include "catalogue/FirmwareVersion.h"
#include "images/ByteText.h"

namespace images {
namespace {

using Json = nlohmann::ordered_json;

std::string firmwareText(const simulator::FpgaConfiguration& configuration) {
    return catalogue::firmwareVersionText(configuration.flavour, configuration.version);
}

}  // namespace

std::string modelText(uint8_t code) {
    const auto* const model = catalogue::modelByCode(code);
    return model != nullptr ? std::string(model->name) : "model " + hexadecimalText(code, 2);
}

std::string boardText(uint8_t revision) {
    if (revision == 0) {
        return "board without revision";
    }
    return revision <= catalogue::kHighestBoardRevision ? "board " + catalogue::boardRevisionText(revision)
                                                        : "board revision " + std::to_string(revision);
}

std::string contentText(const std::optional<simulator::FpgaConfiguration>& configuration) {
    if (!configuration) {
        return "no configuration";
    }
    return modelText(configuration->modelCode) + ", " + boardText(configuration->boardRevision) +
           ", firmware " + firmwareText(*configuration) + " of " +
           catalogue::isoFirmwareDateText(configuration->date)
               .value_or("date " + hexadecimalText(configuration->date, 4));
}

Json boardJson(uint8_t revision) {
    return revision <= catalogue::kHighestBoardRevision ? Json(catalogue::boardRevisionText(revision))
                                                        : Json();
}

Json contentJson(const std::optional<simulator::FpgaConfiguration>& configuration) {
    if (!configuration) {
        return nullptr;
    }
    const auto date = catalogue::isoFirmwareDateText(configuration->date);
    const auto* const model = catalogue::modelByCode(configuration->modelCode);
    return {{"model", model != nullptr ? Json(model->name) : Json()},
            {"board", boardJson(configuration->boardRevision)},
            {"firmware", firmwareText(*configuration)},
            {"date", date ? Json(*date) : Json()}};
}

}  // namespace images
