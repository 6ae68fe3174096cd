#include <IOKit/IOKitLib.h>

#include <span>

#include "platform/CFObjects.h"
#include "platform/Host.h"
#include "platform/ServiceTables.h"

namespace {

// Any two different numbers that are not handles.
constexpr mach_port_t kMasterPort = 0x1103;
constexpr task_port_t kThisTask = 0x1203;

}  // namespace

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
    *existing = platform::Tables().iterators.add({InstalledHost().servicesOfClass(*className)});
    return kIOReturnSuccess;
}

io_object_t IOIteratorNext(io_iterator_t iterator) {
    platform::ServiceTables& tables = platform::Tables();
    auto* const found = tables.iterators.find(iterator);
    if (found == nullptr || found->next == found->services.size()) {
        return MACH_PORT_NULL;
    }
    return tables.services.add(found->services[found->next++]);
}

kern_return_t IOObjectRelease(io_object_t object) {
    platform::ServiceTables& tables = platform::Tables();
    const bool isKnown = tables.services.release(object) || tables.iterators.release(object);
    return isKnown ? kIOReturnSuccess : kIOReturnBadArgument;
}

kern_return_t IOServiceOpen(io_service_t service, task_port_t owningTask, uint32_t /*type*/,
                            io_connect_t* connection) {
    const uint64_t* const found = platform::Tables().services.find(service);
    if (found == nullptr || owningTask != kThisTask) {
        return kIOReturnBadArgument;
    }
    const auto opened = InstalledHost().openService(*found);
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
