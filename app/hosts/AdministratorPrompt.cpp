#include "app/hosts/AdministratorPrompt.h"

#include "framework/widgets/LApplication.h"
#include "framework/widgets/LDialogBox.h"

namespace {

constexpr int32_t kAdministratorLayout = 200;

}  // namespace

bool AskAdministrator() {
    const auto dialog = LDialogBox::CreateDialog("dialog", kAdministratorLayout, LApplication::Current());
    return dialog != nullptr && dialog->DoDialog();
}
