#include "card/CardAccess.h"

#include <IOKit/IOKitLib.h>

#include <cstring>

namespace {

constexpr uint32_t kConnectionType = 0;

// Stores an iterator over the cards' services, owned by the caller.
bool matchCards(io_iterator_t* iterator) {
    mach_port_t masterPort = MACH_PORT_NULL;
    if (IOMasterPort(MACH_PORT_NULL, &masterPort) != kIOReturnSuccess) {
        return false;
    }
    return IOServiceGetMatchingServices(masterPort, IOServiceMatching(card_driver::kServiceClass),
                                        iterator) == kIOReturnSuccess;
}

// The iterator's service at a position, owned by the caller, or 0 if there is none; those before it are
// released.
io_service_t serviceAt(io_iterator_t iterator, int index) {
    int position = 0;
    while (const io_service_t service = IOIteratorNext(iterator)) {
        if (position == index) {
            return service;
        }
        IOObjectRelease(service);
        ++position;
    }
    return MACH_PORT_NULL;
}

bool mapRange(io_connect_t connection, uint32_t memoryType, void** base, uint32_t* size) {
    vm_address_t address = 0;
    if (IOConnectMapMemory(connection, memoryType, mach_task_self(), &address, size, kIOMapAnywhere) !=
        kIOReturnSuccess) {
        return false;
    }
    // The Mac returns addresses as numbers.
    *base = reinterpret_cast<void*>(address);  // NOLINT(performance-no-int-to-ptr)
    return true;
}

bool mapRequestedRanges(io_connect_t connection, void** base0, uint32_t* size0, void** base1,
                        uint32_t* size1) {
    return (base0 == nullptr || mapRange(connection, 0, base0, size0)) &&
           (base1 == nullptr || mapRange(connection, 1, base1, size1));
}

bool askForInformation(io_connect_t connection, char* reply) {
    IOByteCount size = card_driver::kInformationBytes;
    return IOConnectMethodScalarIStructureO(connection, card_driver::kInformationMethod, 0, &size, reply) ==
           kIOReturnSuccess;
}

}  // namespace

uint32_t GetNumberOfCardsInstalled() {
    uint32_t count = 0;
    io_iterator_t iterator = MACH_PORT_NULL;
    if (!matchCards(&iterator)) {
        return count;
    }
    while (const io_service_t service = IOIteratorNext(iterator)) {
        io_connect_t connection = MACH_PORT_NULL;
        const kern_return_t opened = IOServiceOpen(service, mach_task_self(), kConnectionType, &connection);
        IOObjectRelease(service);
        if (opened == kIOReturnSuccess) {
            char information[card_driver::kInformationBytes];
            askForInformation(connection, information);
            ++count;
            IOServiceClose(connection);
        }
    }
    IOObjectRelease(iterator);
    return count;
}

uint32_t OpenCard(int index, void** base0, uint32_t* size0, void** base1, uint32_t* size1) {
    io_iterator_t iterator = MACH_PORT_NULL;
    if (!matchCards(&iterator)) {
        return 0;
    }
    io_connect_t connection = 0;
    if (const io_service_t service = serviceAt(iterator, index)) {
        const kern_return_t opened = IOServiceOpen(service, mach_task_self(), kConnectionType, &connection);
        IOObjectRelease(service);
        if (opened != kIOReturnSuccess) {
            connection = 0;
        } else if (!mapRequestedRanges(connection, base0, size0, base1, size1)) {
            IOServiceClose(connection);
            connection = 0;
        }
    }
    IOObjectRelease(iterator);
    return connection;
}

void CloseCard(uint32_t connection) {
    IOServiceClose(connection);
}

int GetCardInformation(uint32_t connection, char* name, char* location) {
    char information[card_driver::kInformationBytes] = {};
    if (!askForInformation(connection, information)) {
        return 0;
    }
    // A driver terminates both texts. If one does not, they end here.
    information[kCardTextBytes - 1] = '\0';
    information[card_driver::kInformationBytes - 1] = '\0';
    std::memcpy(name, information, kCardTextBytes);
    std::memcpy(location, information + card_driver::kLocationAt, kCardTextBytes);
    return 1;
}
