#pragma once

// What the Mac services have handed out and keep for their callers. The tables belong to the installed host:
// they are empty when it is installed and go when it is replaced.

#include <Carbon/AppleEvents.h>
#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/IOKitLib.h>
#include <Security/Authorization.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/HandleTable.h"

namespace platform {

struct ServiceIterator {
    std::vector<uint64_t> services;
    std::size_t next = 0;
};

// A dictionary's class name, a URL's path, or an array's elements, which it owns.
struct CFObject {
    std::string text;
    std::vector<CFTypeRef> elements;
};

// The class and ID are those of an event; other descriptors have none.
struct DescriptorData {
    std::vector<uint8_t> bytes;
    AEEventClass eventClass = 0;
    AEEventID eventID = 0;
};

struct Authorization {
    bool holdsAdministratorRight = false;
};

struct ServiceTables {
    // The host's numbers of services. IOObjectRelease takes both kinds, so their handles differ.
    HandleTable<io_service_t, uint64_t> services{0x10001};
    HandleTable<io_iterator_t, ServiceIterator> iterators{0x10003};
    HandleTable<CFTypeRef, CFObject> objects;
    HandleTable<void*, DescriptorData> descriptors;
    HandleTable<AuthorizationRef, Authorization> authorizations;
    // The only bundle. A Get function hands it out, so it is never released.
    std::filesystem::path mainBundle;
};

// The installed host's tables; calling a service without a host is a bug.
ServiceTables& Tables();

}  // namespace platform
