#include "linux/pci/base/Refusals.h"

#include <cerrno>
#include <system_error>

namespace pci::refusals {

std::string driver(const std::string& name) {
    return "The driver \"" + name + "\" uses the card. Unload that driver, then try again.";
}

std::string reserved(const std::string& driver) {
    return "The card is kept for the driver \"" + driver +
           "\". Clear the card's driver_override, then try again.";
}

std::string neighbour(const std::string& address) {
    return "The card's registers are in the same page of memory as those of the device " + address +
           ". Put the card into another slot, or take the other device out.";
}

std::string mapping(int error) {
    switch (error) {
        case EPERM:
            return kLockedDown;
        case EINVAL:
            return "The kernel keeps the card's registers for itself. Unload the driver that uses them, then "
                   "try again.";
        default:
            return "The card's registers cannot be reached: " + std::generic_category().message(error) + ".";
    }
}

std::string noCard(const std::string& folder) {
    return "No card is named in " + folder + ", or none of those named is in this computer.";
}

}  // namespace pci::refusals
