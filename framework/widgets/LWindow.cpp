#include "framework/widgets/LWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLayout>
#include <QPushButton>
#include <cstdio>

#include "framework/core/LException.h"
#include "framework/core/UKeptException.h"
#include "framework/widgets/LApplication.h"
#include "framework/widgets/LMenuBar.h"
#include "framework/widgets/UResources.h"

namespace {

// The program's one menu bar.
constexpr int32_t kMenuBarLayout = 128;

}  // namespace

LWindow::LWindow() : LPane(this) {}

LWindow::~LWindow() {
    if (LApplication* application = LApplication::Current()) {
        application->RemoveWindow(this);
    }
}

LWindow* LWindow::CreateWindow(int32_t layoutID, LCommander* super) {
    LApplication* application = ThrowIfNil(LApplication::Current());
    std::unique_ptr<QWidget> root = UResources::LoadLayout("window", layoutID);
    auto* window = dynamic_cast<LWindow*>(root.get());
    if (window == nullptr) {
        if (root != nullptr) {
            std::fprintf(stderr, "The layout of window %d does not describe an LWindow\n", layoutID);
        }
        return nullptr;
    }
    static_cast<void>(root.release());
    application->AddWindow(window);
    window->SetSuperCommander(super);
    AttachMenuBar(*window, kMenuBarLayout);
    return window;
}

LPane* LWindow::FindPaneByID(PaneIDT paneID) const {
    return ::FindPaneByID(*this, paneID);
}

void LWindow::Show() {
    if (isHidden()) {
        KeepRoomForContents();
        adjustSize();
    }
    show();
    raise();
    activateWindow();
    if (focusWidget() == nullptr) {
        focusNextChild();
    }
    SwitchTarget(this);
}

void LWindow::UpdatePort() {
    if (!isVisible()) {
        return;  // nothing of it is on screen, and Show lays it out
    }
    // Panes that were just shown or hidden are laid out first; otherwise they would be drawn at their old
    // place.
    if (centralWidget() != nullptr && centralWidget()->layout() != nullptr) {
        centralWidget()->layout()->activate();
    }
    layout()->activate();
    repaint();
}

void LWindow::CallForAttention() {
    QApplication::alert(this);
}

void LWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    KeepException([this] { ObeyCommand(kCommandQuit); });
}

void LWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        for (QPushButton* button : findChildren<QPushButton*>()) {
            const bool isOwn = button->window() == this;  // and not a child dialog's
            if (isOwn && button->isDefault() && button->isVisible() && button->isEnabled()) {
                button->click();
                return;
            }
        }
    }
    QMainWindow::keyPressEvent(event);
}

bool LWindow::event(QEvent* event) {
    const bool handled = QMainWindow::event(event);
    if (event->type() == QEvent::LayoutRequest) {
        KeepRoomForContents();
    } else if (event->type() == QEvent::WindowActivate) {
        SwitchTarget(this);
    }
    return handled;
}

void LWindow::KeepRoomForContents() {
    // A main window does not ask its contents how high they are at a given width, so wrapped texts would be
    // cut off at the bottom; the contents get their full height as the least one instead.
    if (QWidget* contents = centralWidget(); contents != nullptr && contents->layout() != nullptr) {
        contents->setMinimumSize(contents->layout()->totalSizeHint());
    }
}
