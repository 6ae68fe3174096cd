#include <Carbon/AppleEvents.h>
#include <Carbon/Processes.h>

#include <cstring>
#include <vector>

#include "platform/Host.h"
#include "platform/LiveDescriptors.h"

namespace {

// What a descriptor's data handle points at.
struct DescriptorData {
    std::vector<uint8_t> bytes;
    AEEventClass eventClass = 0;
    AEEventID eventID = 0;
};

std::size_t gLiveDescriptors = 0;

void hold(AEDesc* descriptor, DescType type, DescriptorData data) {
    *descriptor = {type, new DescriptorData(std::move(data))};
    ++gLiveDescriptors;
}

const DescriptorData* dataOf(const AEDesc* descriptor) {
    return static_cast<const DescriptorData*>(descriptor->dataHandle);
}

}  // namespace

std::size_t CountLiveDescriptors() {
    return gLiveDescriptors;
}

OSErr AECreateDesc(DescType type, const void* data, uint32_t dataBytes, AEDesc* result) {
    const auto* const bytes = static_cast<const uint8_t*>(data);
    hold(result, type, {.bytes = {bytes, bytes + dataBytes}});
    return noErr;
}

OSErr AEDisposeDesc(AEDesc* descriptor) {
    if (descriptor->dataHandle != nullptr) {
        delete static_cast<DescriptorData*>(descriptor->dataHandle);
        --gLiveDescriptors;
    }
    *descriptor = {typeNull, nullptr};
    return noErr;
}

OSErr AECreateAppleEvent(AEEventClass eventClass, AEEventID eventID, const AEAddressDesc* target,
                         int16_t /*returnID*/, int32_t /*transactionID*/, AppleEvent* result) {
    if (target->descriptorType != typeProcessSerialNumber || dataOf(target) == nullptr) {
        *result = {typeNull, nullptr};
        return paramErr;
    }
    hold(result, typeAppleEvent,
         {.bytes = dataOf(target)->bytes, .eventClass = eventClass, .eventID = eventID});
    return noErr;
}

OSErr AESend(const AppleEvent* event, AppleEvent* reply, AESendMode /*mode*/, AESendPriority /*priority*/,
             int32_t /*timeoutTicks*/, void* /*idleProcedure*/, void* /*filterProcedure*/) {
    *reply = {typeNull, nullptr};
    const DescriptorData* const data = dataOf(event);
    ProcessSerialNumber target;
    if (data == nullptr || data->eventClass != kCoreEventClass || data->eventID != kAEShutDown ||
        data->bytes.size() != sizeof target) {
        return paramErr;
    }
    std::memcpy(&target, data->bytes.data(), sizeof target);
    const uint64_t serial = static_cast<uint64_t>(target.highLongOfPSN) << 32 | target.lowLongOfPSN;
    return InstalledHost().deliverShutDownEvent(serial) ? noErr : procNotFound;
}
