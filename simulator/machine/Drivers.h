#pragma once

// The drivers of a machine, without which its cards publish no services: the resident one, which is installed
// or not, and those that were loaded while the machine has been on.

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

struct Drivers {
    // How long a driver that was loaded takes until the cards' services are there.
    static constexpr uint32_t kSecondsToAttach = 3;

    struct Loaded {
        std::string serviceClass;
        uint32_t secondsToAttach = kSecondsToAttach;  // what is left of them
    };

    bool resident = true;
    // Faults, which stay until somebody takes them away.
    bool refusesAdministrator = false;  // the administrator's right is denied, and nobody is asked
    PrivateDriverFault privateDriverFault = PrivateDriverFault::none;
    // By bundle identifier; gone when the machine is switched off.
    std::map<std::string, Loaded> loaded;

    // Whether the cards publish services of a class.
    bool publishes(std::string_view serviceClass) const {
        return (resident && serviceClass == card_driver::kServiceClass) ||
               (privateDriverFault != PrivateDriverFault::publishesNothing &&
                std::ranges::any_of(loaded, [serviceClass](const auto& entry) {
                    return entry.second.serviceClass == serviceClass && entry.second.secondsToAttach == 0;
                }));
    }

    void letPass(uint32_t seconds) {
        for (auto& [identifier, driver] : loaded) {
            driver.secondsToAttach -= std::min(seconds, driver.secondsToAttach);
        }
    }
};

}  // namespace simulator
