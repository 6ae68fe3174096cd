#include <algorithm>
#include <functional>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "catalogue/CardModels.h"
#include "files/UserError.h"
#include "simulator/storage/JsonObject.h"
#include "simulator/storage/StoredMachine.h"

namespace simulator {
namespace {

using Json = JsonObject::Json;

ShiftRegister decodeShift(JsonObject object) {
    const auto bits = object.number<uint32_t>("bits", 0, ShiftRegister::kMostBits);
    ShiftRegister shift;
    shift.load(object.hexadecimal("content", (bits + 7) / 8), bits);
    object.nothingElse();
    return shift;
}

JtagDevice::State decodeJtag(JsonObject object) {
    const auto tap = tapStateNamed(object.text("tap"));
    if (!tap) {
        object.complain("tap", "is not a state of a TAP controller.");
    }
    JtagDevice::State state{.tap = *tap,
                            .instruction = object.number<uint32_t>("instruction"),
                            .tdo = object.flag("tdo"),
                            .instructionShift = decodeShift(object.object("instructionShift")),
                            .dataShift = decodeShift(object.object("dataShift"))};
    object.nothingElse();
    return state;
}

Prom::State decodeProm(JsonObject object) {
    Prom::State state{.programmingMode = object.flag("programmingMode"),
                      .mode = object.number<uint8_t>("mode"),
                      .address = object.number<uint16_t>("address"),
                      .pageData = {},
                      .userCode = object.number<uint32_t>("userCode"),
                      .controlData = object.number<uint8_t>("controlData"),
                      .loadedLast = object.oneOf<Prom::Register>("loadedLast", Prom::kRegisterNames),
                      .operation = object.oneOf<Prom::Operation>("operation", Prom::kOperationNames),
                      .doneAt = object.number<uint64_t>("doneAt")};
    std::ranges::copy(object.hexadecimal("pageData", kPageBytes), state.pageData.begin());
    object.nothingElse();
    return state;
}

JtagChain::State decodeChain(JsonObject object) {
    const JtagChain::State state{.tck = object.flag("tck"),
                                 .clocks = object.number<uint64_t>("clocks"),
                                 .scanBits = object.number<uint64_t>("scanBits"),
                                 .shortScan = object.flag("shortScan")};
    object.nothingElse();
    return state;
}

FpgaConfiguration decodeConfiguration(JsonObject object) {
    const std::string flavour = object.text("flavour");
    if (flavour != "M" && flavour != "W") {
        object.complain("flavour", "is neither M nor W.");
    }
    const FpgaConfiguration configuration{.modelCode = object.number<uint8_t>("modelCode"),
                                          .boardRevision = object.number<uint8_t>("boardRevision"),
                                          .flavour = flavour.front(),
                                          .version = object.number<uint8_t>("version"),
                                          .date = object.number<uint16_t>("date")};
    object.nothingElse();
    return configuration;
}

StoredMachine::Powered decodePowered(JsonObject& object) {
    StoredMachine::Powered powered;
    if (!object.at("running").is_null()) {
        powered.running = decodeConfiguration(object.object("running"));
    }
    powered.jtagOutput = object.number<uint32_t>("jtagOutput");
    powered.chain = decodeChain(object.object("chain"));
    powered.promJtag = decodeJtag(object.object("promJtag"));
    powered.prom = decodeProm(object.object("prom"));
    powered.fpgaJtag = decodeJtag(object.object("fpgaJtag"));
    return powered;
}

Fault decodeFault(JsonObject object) {
    const std::string name = object.text("kind");
    const auto* const found = std::ranges::find(faultKinds(), name, &FaultKindDescription::name);
    if (found == faultKinds().end()) {
        object.complain("kind", "is not a fault that this program knows.");
    }
    Fault fault{.kind = static_cast<FaultKind>(found - faultKinds().begin())};
    if (found->hasCode) {
        fault.code = object.number<uint32_t>("code");
    }
    if (found->hasPage) {
        fault.page = object.number<uint32_t>("page", 0, kPromPages - 1);
    }
    if (found->hasTimes) {
        fault.times = object.number<uint32_t>("times", 0, Fault::kMostTimes);
    }
    if (found->hasFactor) {
        fault.factor = object.number<uint32_t>("factor", Fault::kLeastFactor, Fault::kMostFactor);
    }
    fault.when = object.oneOf<Fault::When>("when", Fault::kWhenNames);
    fault.count = object.number<uint64_t>("count");
    fault.struck = object.flag("struck");
    if (found->canBePrevented) {
        fault.prevented = object.flag("prevented");
    }
    object.nothingElse();
    return fault;
}

RecordingRequest decodeRecording(JsonObject object) {
    constexpr uint64_t kMost = RecordingRequest::kMostMicroseconds;
    RecordingRequest request{.file = object.text("file"),
                             .fromMicroseconds = object.number<uint64_t>("fromMicroseconds", 0, kMost),
                             .microseconds = object.number<uint64_t>("microseconds", 1, kMost)};
    if (!request.file.starts_with('/') || request.file.find('\0') != std::string::npos) {
        object.complain("file", "is not an absolute path.");
    }
    object.nothingElse();
    return request;
}

StoredMachine::Card decodeCard(JsonObject object, bool on) {
    StoredMachine::Card card{
        .board = {.name = object.text("name"),
                  .location = object.text("location"),
                  .modelCode = object.number<uint8_t>("modelCode", catalogue::kFirstModelCode,
                                                      catalogue::kLastModelCode),
                  .revision = object.number<uint8_t>("boardRevision")},
        .promFile = object.text("promFile"),
        .powered = std::nullopt,
        .faults = {},
        .recording = std::nullopt};
    if (!card.promFile.ends_with(".prom") ||
        card.promFile.find_first_of(std::string_view("/\0", 2)) != std::string::npos) {
        object.complain("promFile", "is not a plain file name that ends in .prom.");
    }
    if (on) {
        card.powered = decodePowered(object);
    }
    if (object.has("faults")) {
        for (const JsonObject& fault : object.objects("faults")) {
            card.faults.push_back(decodeFault(fault));
        }
    }
    if (object.has("recording")) {
        card.recording = decodeRecording(object.object("recording"));
    }
    object.nothingElse();
    return card;
}

Drivers decodeDrivers(JsonObject object, bool on) {
    Drivers drivers{.resident = object.flag("resident"),
                    .refusesAdministrator = object.flag("refusesAdministrator"),
                    .privateDriverFault =
                        object.oneOf<PrivateDriverFault>("privateDriverFault", kPrivateDriverFaultNames),
                    .loaded = {}};
    if (on) {
        for (JsonObject driver : object.objects("loaded")) {
            const Drivers::Loaded loaded{.serviceClass = driver.text("serviceClass"),
                                         .secondsToAttach = driver.number<uint32_t>("secondsToAttach")};
            if (!drivers.loaded.emplace(driver.text("identifier"), loaded).second) {
                driver.complain("identifier", "belongs to another driver already.");
            }
            driver.nothingElse();
        }
    }
    object.nothingElse();
    return drivers;
}

Ledger::Entry decodeEntry(JsonObject object) {
    const auto misuse = misuseNamed(object.text("misuse"));
    if (!misuse) {
        object.complain("misuse", "is not a misuse that this program knows.");
    }
    Ledger::Entry entry{.misuse = *misuse,
                        .card = object.text("card"),
                        .detail = object.text("detail"),
                        .firstAccess = object.number<uint64_t>("firstAccess"),
                        .times = object.number<uint64_t>("times")};
    object.nothingElse();
    return entry;
}

// Refuses a key that is there twice: the parser would silently drop one of the values.
class KeyCheck {
  public:
    bool operator()(int /*depth*/, Json::parse_event_t event, const Json& parsed) {
        if (event == Json::parse_event_t::object_start) {
            keys_.emplace_back();
        } else if (event == Json::parse_event_t::object_end) {
            keys_.pop_back();
        } else if (event == Json::parse_event_t::key &&
                   !keys_.back().insert(parsed.get<std::string>()).second) {
            throw files::UserError("the key \"" + parsed.get<std::string>() +
                                   "\" is there twice in one object.");
        }
        return true;
    }

  private:
    std::vector<std::set<std::string>> keys_;  // of the objects being read, outermost first
};

Json parse(std::string_view text) {
    try {
        KeyCheck check;
        return Json::parse(text, std::ref(check));
    } catch (const Json::parse_error& error) {
        throw files::UserError("not JSON at byte " + std::to_string(error.byte) + ".");
    } catch (const Json::out_of_range&) {
        throw files::UserError("a number in it is too large.");
    }
}

}  // namespace

StoredMachine decodeMachine(std::string_view text) {
    const Json json = parse(text);
    JsonObject object(json, "");
    if (object.number<uint32_t>("format") != kMachineFormat) {
        object.complain("format", "is not " + std::to_string(kMachineFormat) +
                                      "; another version of this program made the machine.");
    }
    StoredMachine machine;
    machine.on = object.flag("on");
    machine.accesses = object.number<uint64_t>("accesses");
    if (object.has("drivers")) {
        machine.drivers = decodeDrivers(object.object("drivers"), machine.on);
    }
    std::set<std::string> promFiles;
    for (const JsonObject& card : object.objects("cards")) {
        machine.cards.push_back(decodeCard(card, machine.on));
        if (!promFiles.insert(machine.cards.back().promFile).second) {
            card.complain("promFile", "belongs to another card already.");
        }
    }
    for (const JsonObject& entry : object.objects("ledger")) {
        machine.ledger.push_back(decodeEntry(entry));
    }
    object.nothingElse();
    return machine;
}

}  // namespace simulator
