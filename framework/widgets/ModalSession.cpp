#include "framework/widgets/ModalSession.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>

#include "framework/widgets/LApplication.h"
#include "framework/widgets/LWindow.h"

QWidget* ModalParent() {
    if (QWidget* dialog = QApplication::activeModalWidget()) {
        return dialog;
    }
    const LApplication* application = LApplication::Current();
    return application == nullptr ? nullptr : application->FrontWindow();
}

int RunModal(QDialog& dialog) {
    const LApplication* application = LApplication::Current();
    if (application != nullptr && application->IsQuitting()) {
        return QDialog::Rejected;
    }
    // A dialog without a field to type in starts at its OK button, where a screen reader finds it.
    auto* buttons = dialog.findChild<QDialogButtonBox*>();
    if (buttons != nullptr && dialog.focusWidget() == nullptr) {
        if (QPushButton* button = buttons->button(QDialogButtonBox::Ok)) {
            button->setFocus();
        }
    }
    return dialog.exec();
}

void RemoveButtonIcons(QDialog& dialog) {
    for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
        button->setIcon(QIcon());
    }
}

void DismissDialogs() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* dialog = qobject_cast<QDialog*>(widget); dialog != nullptr && dialog->isVisible()) {
            dialog->reject();
        }
    }
}
