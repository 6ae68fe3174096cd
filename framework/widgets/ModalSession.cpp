#include "framework/widgets/ModalSession.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QWindow>

#include "framework/widgets/LApplication.h"
#include "framework/widgets/LWindow.h"

QWidget* ModalParent() {
    if (QWidget* dialog = QApplication::activeModalWidget()) {
        return dialog;
    }
    const LApplication* application = LApplication::Current();
    return application == nullptr ? nullptr : application->FrontWindow();
}

namespace {

// A dialog that comes up while its window is still on its way to the screen would be centred on where the
// window is not.
void waitUntilPlaced(const QWidget* window) {
    constexpr int kPatienceMilliseconds = 500;
    const QDeadlineTimer patience(kPatienceMilliseconds);
    while (window != nullptr && window->isVisible() && !window->windowHandle()->isExposed() &&
           !patience.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
}

}  // namespace

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
    waitUntilPlaced(dialog.parentWidget());
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
