#include "framework/widgets/UModalAlerts.h"

#include "framework/widgets/LApplication.h"
#include "framework/widgets/LDialogBox.h"
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
