#pragma once

#include <string>
#include <vector>

#include "framework/core/LCommander.h"
#include "framework/core/PascalString.h"

namespace UModalDialogs {

// Shows dialog-<dialogID>.ui with the parameters in its static texts and the text in its edit field, focused
// and selected, and waits for the answer.
// True for OK, with the field's content in the text; false, leaving the text alone, for Cancel, after an
// accepted quit, and when there is no usable layout. Throws "nilP" when the layout lacks the edit field.
bool AskForOneString(LCommander* super, int32_t dialogID, PaneIDT editPaneID, Str255 text,
                     const std::vector<std::string>& parameters = {});

}  // namespace UModalDialogs
