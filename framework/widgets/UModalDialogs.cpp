#include "framework/widgets/UModalDialogs.h"

#include "framework/core/LException.h"
#include "framework/widgets/LDialogBox.h"
#include "framework/widgets/LEditField.h"

bool UModalDialogs::AskForOneString(LCommander* super, int32_t dialogID, PaneIDT editPaneID, Str255 text,
                                    const std::vector<std::string>& parameters) {
    const std::unique_ptr<LDialogBox> dialog = LDialogBox::CreateDialog("dialog", dialogID, super);
    if (dialog == nullptr) {
        return false;
    }
    auto* field = ThrowIfNil(dynamic_cast<LEditField*>(dialog->FindPaneByID(editPaneID)));
    dialog->FillIn(parameters);
    field->SetText(text);
    field->selectAll();
    field->setFocus();
    if (!dialog->DoDialog()) {
        return false;
    }
    field->GetText(text);
    return true;
}
