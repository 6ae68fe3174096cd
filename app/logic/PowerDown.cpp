#include "app/logic/PowerDown.h"

#include <Carbon/Carbon.h>

namespace {

void sendShutDownEvent(const ProcessSerialNumber& process) {
    AEAddressDesc address;
    AppleEvent event;
    AppleEvent reply = {typeNull, nullptr};
    if (AECreateDesc(typeProcessSerialNumber, &process, sizeof process, &address) != noErr) {
        return;
    }
    const OSErr created = AECreateAppleEvent(kCoreEventClass, kAEShutDown, &address, kAutoGenerateReturnID,
                                             kAnyTransactionID, &event);
    AEDisposeDesc(&address);
    if (created != noErr) {
        return;
    }
    AESend(&event, &reply, kAENoReply | kAEAlwaysInteract | kAECanSwitchLayer, kAENormalPriority,
           kAEDefaultTimeout, nullptr, nullptr);
    AEDisposeDesc(&reply);
    AEDisposeDesc(&event);
}

}  // namespace

void PowerDown() {
    Str255 loginProcess;
    CopyCStringToPascal("loginwindow", loginProcess);
    Str255 name = {0};
    ProcessSerialNumber process = {0, kNoProcess};
    OSErr walked = noErr;
    // The process that GetNextProcess leaves behind when it fails is examined, too.
    do {
        walked = GetNextProcess(&process);
        ProcessInfoRec information = {kProcessInfoRecordLength, name, {}, nullptr};
        GetProcessInformation(&process, &information);
        if (EqualString(name, loginProcess, true, true)) {
            sendShutDownEvent(process);
        }
    } while (walked == noErr);
}
