#include "simulator/storage/PowerLoss.h"

#include <cstdlib>
#include <exception>
#include <utility>

namespace simulator {

void endProcessOnPowerLoss(MachineDirectory& directory, std::function<void(const char*)> say) {
    directory.machine().onPowerLost([&directory, say = std::move(say)] {
        say(kPowerLossMessage);
        try {
            directory.save();
        } catch (const std::exception& error) {
            say(error.what());
        }
        std::_Exit(kPowerWasLost);
    });
}

}  // namespace simulator
