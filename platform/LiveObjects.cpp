#include "platform/LiveObjects.h"

#include "platform/CFObjects.h"
#include "platform/IORegistry.h"
#include "platform/LiveAuthorizations.h"
#include "platform/LiveDescriptors.h"

LiveObjects CountLiveObjects() {
    return {.services = CountLiveServices(),
            .iterators = CountLiveIterators(),
            .coreFoundationObjects = CFObjects::countLive(),
            .appleEventDescriptors = CountLiveDescriptors(),
            .authorizations = CountLiveAuthorizations()};
}
