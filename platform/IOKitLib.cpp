#include <IOKit/IOKitLib.h>

#include <cstddef>
#include <span>
#include <vector>

#include "platform/CFObjects.h"
#include "platform/HandleTable.h"
#include "platform/Host.h"
#include "platform/LiveRegistryObjects.h"

namespace {

// Any two numbers will do that are no handle and not each other.
constexpr mach_port_t kMasterPort = 0x1103;
constexpr task_port_t kThisTask = 0x1203;

struct Iterator {
    std::vector<uint64_t> services;
    std::size_t next = 0;
};

// What an io_object_t stands for: a service, or an iterator over services.
struct RegistryObject {
    bool isIterator = false;
    uint64_t service = 0;
    Iterator iterator = {};
};

HandleTable<RegistryObject> gObjects;
std::size_t gIterators = 0;

RegistryObject* findObject(io_object_t object, bool isIterator) {
    RegistryObject* const found = gObjects.find(object);
    return found != nullptr && found->isIterator == isIterator ? found : nullptr;
}

}  // namespace

std::size_t CountLiveServices() {
    return gObjects.size() - gIterators;
}

std::size_t CountLiveIterators() {
    return gIterators;
}

task_port_t mach_task_self() {
    return kThisTask;
}

kern_return_t IOMasterPort(mach_port_t /*bootstrapPort*/, mach_port_t* masterPort) {
    *masterPort = kMasterPort;
    return kIOReturnSuccess;
}

CFMutableDictionaryRef IOServiceMatching(const char* className) {
    return CFObjects::addDictionary(className);
}

kern_return_t IOServiceGetMatchingServices(mach_port_t masterPort, CFMutableDictionaryRef matching,
                                           io_iterator_t* existing) {
    const auto className = CFObjects::text(matching);
    if (matching != nullptr) {
        CFRelease(matching);
    }
    if (masterPort != kMasterPort || !className) {
        return kIOReturnBadArgument;
    }
    *existing = gObjects.add({.isIterator = true, .iterator = {InstalledHost().servicesOfClass(*className)}});
    ++gIterators;
    return kIOReturnSuccess;
}

io_object_t IOIteratorNext(io_iterator_t iterator) {
    RegistryObject* const found = findObject(iterator, true);
    if (found == nullptr || found->iterator.next == found->iterator.services.size()) {
        return MACH_PORT_NULL;
    }
    return gObjects.add({.service = found->iterator.services[found->iterator.next++]});
}

kern_return_t IOObjectRelease(io_object_t object) {
    const bool isIterator = findObject(object, true) != nullptr;
    if (!gObjects.release(object)) {
        return kIOReturnBadArgument;
    }
    if (isIterator) {
        --gIterators;
    }
    return kIOReturnSuccess;
}

kern_return_t IOServiceOpen(io_service_t service, task_port_t owningTask, uint32_t /*type*/,
                            io_connect_t* connection) {
    const RegistryObject* const found = findObject(service, false);
    if (found == nullptr || owningTask != kThisTask) {
        return kIOReturnBadArgument;
    }
    const auto opened = InstalledHost().openService(found->service);
    if (!opened) {
        return kIOReturnNoDevice;
    }
    *connection = *opened;
    return kIOReturnSuccess;
}

kern_return_t IOServiceClose(io_connect_t connection) {
    return InstalledHost().closeConnection(connection) ? kIOReturnSuccess : kIOReturnBadArgument;
}

kern_return_t IOConnectMapMemory(io_connect_t connection, uint32_t memoryType, task_port_t intoTask,
                                 vm_address_t* address, vm_size_t* size, IOOptionBits /*options*/) {
    if (intoTask != kThisTask) {
        return kIOReturnBadArgument;
    }
    const auto range = InstalledHost().mapMemory(connection, memoryType);
    if (!range) {
        return kIOReturnError;
    }
    *address = reinterpret_cast<vm_address_t>(range->base);
    *size = range->bytes;
    return kIOReturnSuccess;
}

kern_return_t IOConnectMethodScalarIStructureO(io_connect_t connection, uint32_t index,
                                               IOItemCount scalarInputCount, IOByteCount* structureSize,
                                               void* structure) {
    if (scalarInputCount != 0) {
        return kIOReturnUnsupported;
    }
    const std::span reply(static_cast<uint8_t*>(structure), *structureSize);
    const auto filled = InstalledHost().callMethod(connection, index, reply);
    if (!filled) {
        return kIOReturnError;
    }
    *structureSize = static_cast<IOByteCount>(*filled);
    return kIOReturnSuccess;
}
