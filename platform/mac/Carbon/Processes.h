#pragma once

// The Process Manager: the list of running processes.

#include <Carbon/MacTypes.h>

struct ProcessSerialNumber {
    uint32_t highLongOfPSN;
    uint32_t lowLongOfPSN;
};

constexpr uint32_t kNoProcess = 0;

// The record's length on the Mac, where a pointer has 4 bytes. Callers state it, and it is checked.
constexpr uint32_t kProcessInfoRecordLength = 60;

// The part of the record that is filled here: the number, and the name if there is a buffer (Str255) for it.
struct ProcessInfoRec {
    uint32_t processInfoLength;
    StringPtr processName;
    ProcessSerialNumber processNumber;
    void* processAppSpec;
};

// Replaces a serial number with that of the next process in the list, starting from kNoProcess. At the end of
// the list, or if the process has ended since, it becomes kNoProcess and the result is procNotFound.
OSErr GetNextProcess(ProcessSerialNumber* process);

// Fills the record. Leaves it and the name buffer alone if there is no such process (procNotFound) or the
// record's length is not kProcessInfoRecordLength (paramErr).
OSErr GetProcessInformation(const ProcessSerialNumber* process, ProcessInfoRec* information);
