#pragma once

// The part of the Apple Event Manager that sends an event to a process.

#include <Carbon/MacTypes.h>

// A descriptor owns its data, which AEDisposeDesc releases. An empty descriptor may be disposed of, too.
struct AEDesc {
    DescType descriptorType;
    void* dataHandle;
};
using AEAddressDesc = AEDesc;
using AppleEvent = AEDesc;
using AEEventClass = OSType;
using AEEventID = OSType;
using AESendMode = int32_t;
using AESendPriority = int16_t;

constexpr DescType typeNull = FourCharacters("null");
constexpr DescType typeAppleEvent = FourCharacters("aevt");
constexpr DescType typeProcessSerialNumber = FourCharacters("psn ");
constexpr AEEventClass kCoreEventClass = FourCharacters("aevt");
constexpr AEEventID kAEShutDown = FourCharacters("shut");

constexpr int16_t kAutoGenerateReturnID = -1;
constexpr int32_t kAnyTransactionID = 0;

constexpr AESendMode kAENoReply = 0x01;
constexpr AESendMode kAEAlwaysInteract = 0x30;
constexpr AESendMode kAECanSwitchLayer = 0x40;
constexpr AESendPriority kAENormalPriority = 0;
constexpr int32_t kAEDefaultTimeout = -1;

// Makes a descriptor with a copy of the data, which the caller disposes of. Always noErr.
OSErr AECreateDesc(DescType type, const void* data, uint32_t dataBytes, AEDesc* result);

// Leaves the descriptor empty. Always noErr.
OSErr AEDisposeDesc(AEDesc* descriptor);

// Makes an event addressed to a copy of the target, which must be a process serial number; any other target
// gives paramErr and an empty descriptor. The two IDs have no meaning here.
OSErr AECreateAppleEvent(AEEventClass eventClass, AEEventID eventID, const AEAddressDesc* target,
                         int16_t returnID, int32_t transactionID, AppleEvent* result);

// Sends an event. Only the shutdown event to a process is known here: any other gives paramErr, and a
// process that does not exist procNotFound. With noErr the event was delivered, but not necessarily obeyed.
// The reply is left empty. Mode, priority, timeout and procedures have no meaning here.
OSErr AESend(const AppleEvent* event, AppleEvent* reply, AESendMode mode, AESendPriority priority,
             int32_t timeoutTicks, void* idleProcedure, void* filterProcedure);
