#include <Carbon/Processes.h>

#include <algorithm>

#include "platform/Host.h"

namespace {

uint64_t serialOf(const ProcessSerialNumber& process) {
    return static_cast<uint64_t>(process.highLongOfPSN) << 32 | process.lowLongOfPSN;
}

ProcessSerialNumber numberOf(uint64_t serial) {
    return {static_cast<uint32_t>(serial >> 32), static_cast<uint32_t>(serial)};
}

}  // namespace

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
