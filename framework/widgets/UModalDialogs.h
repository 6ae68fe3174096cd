#pragma once

// The alerts and dialogs that layouts describe.

#include <cstdint>
#include <string>
#include <vector>

#include "framework/core/LCommander.h"
#include "framework/core/PascalString.h"

namespace UModalAlerts {

constexpr int16_t kItemOK = 1;
constexpr int16_t kItemCancel = 2;

// Shows the alert of alert-<alertID>.ui and waits for the answer: kItemOK or kItemCancel. Escape, an accepted
// quit and an unusable layout are kItemCancel; standard error and another alert report the unusable layout.
int16_t Alert(int32_t alertID);

}  // namespace UModalAlerts

namespace UModalDialogs {

// Shows dialog-<dialogID>.ui with the parameters in its static texts and the text in its edit field, focused
// and selected, and waits for the answer. True for OK, with the field's content in the text. False, leaving
// the text alone, for Cancel, after an accepted quit, and if there is no usable layout. Throws "nilP" if the
// layout lacks the edit field.
[[nodiscard]] bool AskForOneString(LCommander* super, int32_t dialogID, PaneIDT editPaneID, Str255 text,
                                   const std::vector<std::string>& parameters = {});

}  // namespace UModalDialogs
