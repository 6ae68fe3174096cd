#pragma once

// The device registry: finding a driver's services, connecting to one, mapping its memory, calling its
// methods.
//
// Names, argument orders, reference rules and status codes are the Mac's. Objects that a call returns belong
// to the caller, who gives them back with IOObjectRelease.

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>

using kern_return_t = int32_t;
using mach_port_t = uint32_t;
using task_port_t = mach_port_t;
using vm_address_t = uintptr_t;
using vm_size_t = uint32_t;

using io_object_t = mach_port_t;
using io_iterator_t = io_object_t;
using io_service_t = io_object_t;
using io_connect_t = io_object_t;

using IOOptionBits = uint32_t;
using IOItemCount = uint32_t;
using IOByteCount = uint32_t;

constexpr mach_port_t MACH_PORT_NULL = 0;

constexpr kern_return_t kIOReturnSuccess = 0;
constexpr kern_return_t kIOReturnError = static_cast<kern_return_t>(0xE00002BC);
constexpr kern_return_t kIOReturnNoDevice = static_cast<kern_return_t>(0xE00002C0);
constexpr kern_return_t kIOReturnBadArgument = static_cast<kern_return_t>(0xE00002C2);
constexpr kern_return_t kIOReturnUnsupported = static_cast<kern_return_t>(0xE00002C7);

constexpr IOOptionBits kIOMapAnywhere = 0x1;

// This process.
task_port_t mach_task_self();

// Stores the port through which the registry is asked. Always succeeds.
kern_return_t IOMasterPort(mach_port_t bootstrapPort, mach_port_t* masterPort);

// A matching dictionary for a driver class, owned by the caller.
CFMutableDictionaryRef IOServiceMatching(const char* className);

// Consumes one reference of the dictionary, whatever the outcome. Stores an iterator over the services that
// match at this moment.
kern_return_t IOServiceGetMatchingServices(mach_port_t masterPort, CFMutableDictionaryRef matching,
                                           io_iterator_t* existing);

// The iterator's next object, owned by the caller, or 0 at the end.
io_object_t IOIteratorNext(io_iterator_t iterator);

// kIOReturnBadArgument, changing nothing, for a number that is not an object.
kern_return_t IOObjectRelease(io_object_t object);

// Stores a connection, which the caller closes with IOServiceClose. kIOReturnNoDevice if the service cannot
// be opened. The type has no meaning here.
kern_return_t IOServiceOpen(io_service_t service, task_port_t owningTask, uint32_t type,
                            io_connect_t* connection);

// Takes the connection's mappings away too. kIOReturnBadArgument, changing nothing, for a number that is not
// a connection.
kern_return_t IOServiceClose(io_connect_t connection);

// Stores the address and the length in bytes of one of the device's memory ranges. Both are left alone on
// failure.
kern_return_t IOConnectMapMemory(io_connect_t connection, uint32_t memoryType, task_port_t intoTask,
                                 vm_address_t* address, vm_size_t* size, IOOptionBits options);

// Calls a driver method that takes no scalars and answers with a structure. *structureSize holds the reply
// buffer's bytes on entry and the bytes filled on success; the buffer follows it.
kern_return_t IOConnectMethodScalarIStructureO(io_connect_t connection, uint32_t index,
                                               IOItemCount scalarInputCount, IOByteCount* structureSize,
                                               void* structure);
