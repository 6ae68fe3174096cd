#pragma once

// The drivers of a machine: the resident one, which is installed or not, and those loaded since the machine
// was switched on. Without a driver the cards publish no services.

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "platform/CardDriver.h"

namespace simulator {

enum class PrivateDriverFault { none, doesNotLoad, publishesNothing };
// The words for them in files.
constexpr std::array<std::string_view, 3> kPrivateDriverFaultNames{"none", "does not load",
                                                                   "publishes nothing"};

// The fields are changed directly: by the simulated tools, by the command line, and when a machine is
// restored.
struct Drivers {
    // How long a loaded driver takes to publish the cards' services.
    static constexpr uint32_t kSecondsToAttach = 3;

    // A driver from a bundle, which publishes its services once it has attached to the cards.
    struct Loaded {
        std::string serviceClass;
        uint32_t secondsToAttach = kSecondsToAttach;  // what is left of it
    };

    bool resident = true;
    // Faults, which last until they are removed.
    bool refusesAdministrator = false;  // the administrator's right is denied without asking
    PrivateDriverFault privateDriverFault = PrivateDriverFault::none;
    // By bundle identifier. Lost when the machine is switched off.
    std::map<std::string, Loaded> loaded;

    // Whether the cards publish services of a class.
    bool publishes(std::string_view serviceClass) const {
        return (resident && serviceClass == card_driver::kServiceClass) ||
               (privateDriverFault != PrivateDriverFault::publishesNothing &&
                std::ranges::any_of(loaded, [serviceClass](const auto& entry) {
                    return entry.second.serviceClass == serviceClass && entry.second.secondsToAttach == 0;
                }));
    }

    // Gives the drivers this much more time to attach. The machine's clock, which counts accesses, does not
    // move.
    void letPass(uint32_t seconds) {
        for (auto& [identifier, driver] : loaded) {
            driver.secondsToAttach -= std::min(seconds, driver.secondsToAttach);
        }
    }
};

}  // namespace simulator
