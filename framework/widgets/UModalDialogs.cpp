#include "framework/widgets/UModalDialogs.h"

#include "framework/core/LException.h"
#include "framework/widgets/LApplication.h"
#include "framework/widgets/LDialogBox.h"
#include "framework/widgets/LEditField.h"
#include "framework/widgets/StandardAlert.h"

int16_t UModalAlerts::Alert(int32_t alertID) {
    const std::unique_ptr<LDialogBox> dialog =
        LDialogBox::CreateDialog("alert", alertID, LApplication::Current());
    if (dialog == nullptr) {
        Str255 title;
        Str255 explanation;
        PascalFromText("The program is incomplete", title);
        PascalFromText("A part of it is missing, so it cannot say what happened. Install the program again.",
                       explanation);
        StandardAlert(kAlertCautionAlert, title, explanation, nullptr, nullptr);
        return kItemCancel;
    }
    return dialog->DoDialog() ? kItemOK : kItemCancel;
}

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
