#include "app/hosts/FailureMessage.h"

#include <unistd.h>
#include <QGuiApplication>
#include <QMessageBox>

#include "framework/widgets/DesktopFit.h"
#include "framework/widgets/DialogLoop.h"
#include "framework/widgets/UDisplay.h"

void ShowFailure(const char* what) {
    const QString platform = QGuiApplication::platformName();
    if (isatty(STDERR_FILENO) == 1 || platform.isEmpty() || platform == "offscreen" ||
        platform == "minimal") {
        return;
    }
    QMessageBox* box = nullptr;
    UDisplay::Use([&box, what] {
        box =
            new QMessageBox(QMessageBox::Critical, "VUpdater", QString::fromLocal8Bit(what), QMessageBox::Ok);
        box->setTextFormat(Qt::PlainText);
        RemoveButtonIcons(*box);
    });
    if (box == nullptr || UDisplay::IsGone()) {
        return;
    }
    RunModal(*box);
    // If the display is gone, the box is left until the process ends.
    UDisplay::Use([box] { delete box; });
}
