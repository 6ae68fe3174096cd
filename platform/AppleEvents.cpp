#include <Carbon/AppleEvents.h>
#include <Carbon/Processes.h>

#include <cstring>
#include <utility>

#include "platform/Host.h"
#include "platform/ServiceTables.h"

namespace {

void fill(AEDesc* descriptor, DescType type, platform::DescriptorData data) {
    *descriptor = {type, platform::Tables().descriptors.add(std::move(data))};
}

const platform::DescriptorData* dataOf(const AEDesc* descriptor) {
    return platform::Tables().descriptors.find(descriptor->dataHandle);
}

}  // namespace

OSErr AECreateDesc(DescType type, const void* data, uint32_t dataBytes, AEDesc* result) {
    const auto* const bytes = static_cast<const uint8_t*>(data);
    fill(result, type, {.bytes = {bytes, bytes + dataBytes}});
    return noErr;
}

OSErr AEDisposeDesc(AEDesc* descriptor) {
    platform::Tables().descriptors.release(descriptor->dataHandle);
    *descriptor = {typeNull, nullptr};
    return noErr;
}

OSErr AECreateAppleEvent(AEEventClass eventClass, AEEventID eventID, const AEAddressDesc* target,
                         int16_t /*returnID*/, int32_t /*transactionID*/, AppleEvent* result) {
    if (target->descriptorType != typeProcessSerialNumber || dataOf(target) == nullptr) {
        *result = {typeNull, nullptr};
        return paramErr;
    }
    fill(result, typeAppleEvent,
         {.bytes = dataOf(target)->bytes, .eventClass = eventClass, .eventID = eventID});
    return noErr;
}

OSErr AESend(const AppleEvent* event, AppleEvent* reply, AESendMode /*mode*/, AESendPriority /*priority*/,
             int32_t /*timeoutTicks*/, void* /*idleProcedure*/, void* /*filterProcedure*/) {
    *reply = {typeNull, nullptr};
    const platform::DescriptorData* const data = dataOf(event);
    ProcessSerialNumber target;
    if (data == nullptr || data->eventClass != kCoreEventClass || data->eventID != kAEShutDown ||
        data->bytes.size() != sizeof target) {
        return paramErr;
    }
    std::memcpy(&target, data->bytes.data(), sizeof target);
    const uint64_t serial = static_cast<uint64_t>(target.highLongOfPSN) << 32 | target.lowLongOfPSN;
    return InstalledHost().deliverShutDownEvent(serial) ? noErr : procNotFound;
}
