#include "framework/widgets/DialogLoop.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTimer>
#include <QWindow>
#include <vector>

#include "framework/widgets/LApplication.h"
#include "framework/widgets/LWindow.h"
#include "framework/widgets/UDisplay.h"

QWidget* ModalParent() {
    if (QWidget* dialog = QApplication::activeModalWidget()) {
        return dialog;
    }
    const LApplication* application = LApplication::Current();
    return application == nullptr ? nullptr : application->FrontWindow();
}

namespace {

// A dialog that is shown before its window has reached its place on the screen is centred on the wrong place.
// This centres it again once the window is there.
class CentreOnceExposed : public QObject {
  public:
    CentreOnceExposed(QDialog& dialog, QWindow& window) : QObject(&dialog), mDialog(dialog) {
        window.installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Expose) {
            watched->removeEventFilter(this);
            QTimer::singleShot(0, this, [this] {
                const QRect window = mDialog.parentWidget()->window()->frameGeometry();
                mDialog.move(window.center() - QRect(QPoint(), mDialog.frameSize()).center());
            });
        }
        return false;
    }

  private:
    QDialog& mDialog;
};

// The dialogs that have not returned their answers yet, the innermost last.
std::vector<const QDialog*> gUnanswered;

class Unanswered {
  public:
    explicit Unanswered(const QDialog& dialog) { gUnanswered.push_back(&dialog); }
    ~Unanswered() { gUnanswered.pop_back(); }
    Unanswered(const Unanswered&) = delete;
    Unanswered& operator=(const Unanswered&) = delete;
};

}  // namespace

int RunModal(QDialog& dialog) {
    const LApplication* application = LApplication::Current();
    if (UDisplay::IsGone() || (application != nullptr && application->IsQuitting())) {
        return QDialog::Rejected;
    }
    // A dialog without a field to type in starts at its OK button, where a screen reader finds it.
    auto* buttons = dialog.findChild<QDialogButtonBox*>();
    if (buttons != nullptr && dialog.focusWidget() == nullptr) {
        if (QPushButton* button = buttons->button(QDialogButtonBox::Ok)) {
            button->setFocus();
        }
    }
    QWindow* const window =
        dialog.parentWidget() != nullptr ? dialog.parentWidget()->windowHandle() : nullptr;
    if (window != nullptr && !window->isExposed()) {
        new CentreOnceExposed(dialog, *window);
    }
    if (QWidget* parent = dialog.parentWidget()) {
        UDisplay::Use([parent] { QApplication::alert(parent); });
    }
    const Unanswered unanswered(dialog);
    // The dialog's own loop would keep its address on a stack that may be abandoned half-way.
    dialog.setModal(true);
    dialog.setResult(QDialog::Rejected);
    UDisplay::Use([&dialog] { dialog.show(); });
    while (!UDisplay::IsGone() && dialog.isVisible()) {
        UDisplay::Use([] { QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); });
    }
    // The answer and the end of the program may have come in the same pass.
    const bool isToEnd = UDisplay::IsGone() || (application != nullptr && application->IsQuitting());
    return isToEnd ? static_cast<int>(QDialog::Rejected) : dialog.result();
}

bool IsBehindDialog(const QWidget& widget) {
    const QWidget* const window = widget.window();
    const QWidget* const shown = QApplication::activeModalWidget();
    return (shown != nullptr && shown != window) || (!gUnanswered.empty() && gUnanswered.back() != window);
}

void DismissDialogs() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* dialog = qobject_cast<QDialog*>(widget); dialog != nullptr && dialog->isVisible()) {
            dialog->reject();
        }
    }
}
