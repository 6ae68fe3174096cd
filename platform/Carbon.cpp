// The Carbon services: Pascal strings, the process list, and events to a process.

#include <Carbon/Carbon.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/Host.h"
#include "platform/ServiceTables.h"

namespace {

bool isUTF8Continuation(char character) {
    return (static_cast<unsigned char>(character) & 0xC0) == 0x80;
}

uint64_t serialOf(const ProcessSerialNumber& process) {
    return static_cast<uint64_t>(process.highLongOfPSN) << 32 | process.lowLongOfPSN;
}

ProcessSerialNumber numberOf(uint64_t serial) {
    return {static_cast<uint32_t>(serial >> 32), static_cast<uint32_t>(serial)};
}

void fill(AEDesc* descriptor, DescType type, platform::DescriptorData data) {
    *descriptor = {type, platform::Tables().descriptors.add(std::move(data))};
}

const platform::DescriptorData* dataOf(const AEDesc* descriptor) {
    return platform::Tables().descriptors.find(descriptor->dataHandle);
}

}  // namespace

void CopyCStringToPascal(const char* source, Str255 destination) {
    constexpr std::size_t kMostCharacters = 255;
    std::size_t length = strnlen(source, kMostCharacters + 1);
    if (length > kMostCharacters) {
        length = kMostCharacters;
        while (length > 0 && isUTF8Continuation(source[length])) {
            --length;
        }
    }
    destination[0] = static_cast<unsigned char>(length);
    std::memcpy(destination + 1, source, length);
}

bool EqualString(ConstStr255Param first, ConstStr255Param second, bool /*caseSensitive*/,
                 bool /*diacriticalSensitive*/) {
    return std::equal(first, first + first[0] + 1, second, second + second[0] + 1);
}

OSErr GetNextProcess(ProcessSerialNumber* process) {
    const auto processes = InstalledHost().processes();
    auto next = processes.begin();
    if (const uint64_t serial = serialOf(*process); serial != kNoProcess) {
        next = std::find_if(processes.begin(), processes.end(),
                            [serial](const Host::Process& entry) { return entry.serialNumber == serial; });
        if (next != processes.end()) {
            ++next;
        }
    }
    if (next == processes.end()) {
        *process = numberOf(kNoProcess);
        return procNotFound;
    }
    *process = numberOf(next->serialNumber);
    return noErr;
}

OSErr GetProcessInformation(const ProcessSerialNumber* process, ProcessInfoRec* information) {
    if (information->processInfoLength != kProcessInfoRecordLength) {
        return paramErr;
    }
    for (const Host::Process& entry : InstalledHost().processes()) {
        if (entry.serialNumber == serialOf(*process)) {
            information->processNumber = *process;
            if (information->processName != nullptr) {
                CopyCStringToPascal(entry.name.c_str(), information->processName);
            }
            return noErr;
        }
    }
    return procNotFound;
}

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
    return InstalledHost().deliverShutDownEvent(serialOf(target)) ? noErr : procNotFound;
}
