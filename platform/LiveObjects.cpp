#include "platform/LiveObjects.h"

#include "platform/CFObjects.h"
#include "platform/LiveAuthorizations.h"
#include "platform/LiveDescriptors.h"
#include "platform/LiveRegistryObjects.h"

LiveObjects CountLiveObjects() {
    return {.services = CountLiveServices(),
            .iterators = CountLiveIterators(),
            .coreFoundationObjects = CFObjects::countLive(),
            .appleEventDescriptors = CountLiveDescriptors(),
            .authorizations = CountLiveAuthorizations()};
}
