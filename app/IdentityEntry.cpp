// CUpdaterApp's identity entry: asking for the serial number of a card that has none.

#include <QScopeGuard>

#include "app/ApplicationHooks.h"
#include "app/CUpdaterApp.h"
#include "app/ResourceIDs.h"
#include "app/logic/CardValues.h"
#include "catalogue/CardIdentity.h"
#include "catalogue/CardModels.h"
#include "framework/core/PascalString.h"
#include "framework/widgets/UModalDialogs.h"
#include "hw/PromOperations.h"

void CUpdaterApp::WriteTypedIdentity() {
    const auto announce = [this](int32_t isWriting) {
        KeepException([&] { BroadcastMessage(kIdentityWriteMessage, &isWriting); });
    };
    announce(1);
    const auto end = qScopeGuard([&announce] { announce(0); });
    // Reports its own failures; the identity counts as entered even then.
    WriteSerialNumber(gSerialNumber);
}

bool CUpdaterApp::GetSerialNumberDialog() {
    // Keeps what was typed, so that a rejected serial number can be corrected.
    Str255 text = {0};
    const std::vector<std::string> card = {catalogue::modelName(gusDeviceID),
                                           catalogue::serialNumberPrefix(gusDeviceID)};
    while (UModalDialogs::AskForOneString(this, kIdentityDialog, kSerialNumberField, text, card)) {
        if (const auto identity = catalogue::parseTypedSerialNumber(TextOfPascal(text))) {
            gSerialNumber = *identity;
            WriteTypedIdentity();
            return true;
        }
        ShowAlert("Error", "Invalid Serial Number!");
    }
    return false;
}
