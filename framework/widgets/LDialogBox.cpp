#include "framework/widgets/LDialogBox.h"

#include <QLabel>
#include <QLayout>
#include <algorithm>
#include <cstdio>

#include "framework/widgets/DesktopFit.h"
#include "framework/widgets/DialogLoop.h"
#include "framework/widgets/UResources.h"

namespace {

// A dialog that cannot be resized is as wide as its texts, and Qt would wrap these at 20 to 80 characters,
// whatever the screen.
void WrapTexts(const LDialogBox& dialog) {
    if (dialog.layout() == nullptr || dialog.layout()->sizeConstraint() != QLayout::SetFixedSize) {
        return;
    }
    QList<QLabel*> wrapped = dialog.findChildren<QLabel*>();
    wrapped.removeIf([](const QLabel* label) { return !label->wordWrap(); });
    int width = 0;
    for (const QLabel* label : wrapped) {
        width = std::max(width, ComfortableTextWidth(*label));
    }
    for (QLabel* label : wrapped) {
        label->setFixedWidth(width);
    }
}

}  // namespace

LDialogBox::LDialogBox() : LPane(this) {}

std::unique_ptr<LDialogBox> LDialogBox::CreateDialog(const char* kind, int32_t layoutID, LCommander* super) {
    std::unique_ptr<QWidget> root = UResources::LoadLayout(kind, layoutID);
    auto* dialog = dynamic_cast<LDialogBox*>(root.get());
    if (dialog == nullptr) {
        if (root != nullptr) {
            std::fprintf(stderr, "The layout of %s %d does not describe an LDialogBox\n", kind, layoutID);
        }
        return nullptr;
    }
    static_cast<void>(root.release());
    RemoveButtonIcons(*dialog);
    TakeDesktopsButtonOrder(*dialog);
    dialog->SetSuperCommander(super);
    dialog->setParent(ModalParent(), dialog->windowFlags());
    WrapTexts(*dialog);
    return std::unique_ptr<LDialogBox>(dialog);
}

LPane* LDialogBox::FindPaneByID(PaneIDT paneID) const {
    return ::FindPaneByID(*this, paneID);
}

void LDialogBox::FillIn(const std::vector<std::string>& parameters) {
    for (auto* label : findChildren<QLabel*>()) {
        QString text = label->text();
        for (std::size_t number = 0; number < parameters.size(); ++number) {
            text.replace("^" + QString::number(number), QString::fromStdString(parameters[number]));
        }
        label->setText(text);
    }
    WrapTexts(*this);
}

bool LDialogBox::DoDialog() {
    return RunModal(*this) == QDialog::Accepted;
}
