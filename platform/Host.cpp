#include "platform/Host.h"

#include <memory>

#include "platform/LiveObjects.h"
#include "platform/ServiceTables.h"

namespace platform {

Host* installedHost = nullptr;

namespace {

std::unique_ptr<ServiceTables> gTables;

}  // namespace

ServiceTables& Tables() {
    assert(gTables != nullptr);
    return *gTables;
}

}  // namespace platform

void InstallHost(Host* host) {
    platform::gTables = host == nullptr ? nullptr : std::make_unique<platform::ServiceTables>();
    platform::installedHost = host;
}

LiveObjects CountLiveObjects() {
    if (platform::gTables == nullptr) {
        return {};
    }
    const platform::ServiceTables& tables = *platform::gTables;
    return {.services = tables.services.size(),
            .iterators = tables.iterators.size(),
            .coreFoundationObjects = tables.objects.size(),
            .appleEventDescriptors = tables.descriptors.size(),
            .authorizations = tables.authorizations.size()};
}
