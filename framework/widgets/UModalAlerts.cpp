#include "framework/widgets/UModalAlerts.h"

#include "framework/widgets/LApplication.h"
#include "framework/widgets/LDialogBox.h"

int16_t UModalAlerts::Alert(int32_t alertID) {
    const std::unique_ptr<LDialogBox> dialog =
        LDialogBox::CreateDialog("alert", alertID, LApplication::Current());
    return dialog != nullptr && dialog->DoDialog() ? kItemOK : kItemCancel;
}
