#include "framework/widgets/LWindow.h"

#include <QApplication>
#include <QBoxLayout>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLayout>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>
#include <cstdio>

#include "framework/core/LException.h"
#include "framework/widgets/DesktopFit.h"
#include "framework/widgets/LApplication.h"
#include "framework/widgets/LSeparator.h"
#include "framework/widgets/MenuBar.h"
#include "framework/widgets/UDisplay.h"
#include "framework/widgets/UResources.h"

namespace {

// The program's one menu bar.
constexpr int32_t kMenuBarLayout = 128;

// The text of the widget that a caption names; empty for any other label.
QString ValueNamedBy(const QLabel& caption) {
    if (const auto* popup = qobject_cast<const QComboBox*>(caption.buddy())) {
        return popup->currentText();
    }
    const auto* label = qobject_cast<const QLabel*>(caption.buddy());
    return label != nullptr ? label->text() : QString();
}

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
    if (!application->mTitle.empty()) {
        window->setWindowTitle(QString::fromStdString(application->mTitle));
    }
    application->AddWindow(window);
    window->SetSuperCommander(super);
    TakeDesktopsButtonOrder(*window);
    AttachMenuBar(*window, kMenuBarLayout);
    return window;
}

LPane* LWindow::FindPaneByID(PaneIDT paneID) const {
    return ::FindPaneByID(*this, paneID);
}

bool LWindow::ObeyCommand(CommandT command, void* parameter) {
    if (command != kCommandCopyDetails) {
        return LCommander::ObeyCommand(command, parameter);
    }
    if (const QString details = Details(); !details.isEmpty()) {
        QGuiApplication::clipboard()->setText(details);
    }
    return true;
}

void LWindow::FindCommandStatus(CommandT command, uint8_t& outEnabled, uint8_t& outUsesMark,
                                uint16_t& outMark, unsigned char* outName) {
    if (command == kCommandCopyDetails) {
        outEnabled = Details().isEmpty() ? 0 : 1;
    } else {
        LCommander::FindCommandStatus(command, outEnabled, outUsesMark, outMark, outName);
    }
}

QString LWindow::Details() const {
    QString details;
    for (const QLabel* label : findChildren<QLabel*>()) {
        if (label->window() != this) {
            continue;  // and not a child dialog's
        }
        QString line = label->property("isDetail").toBool() && label->isVisible() ? label->text() : QString();
        if (const QString value = ValueNamedBy(*label); !value.isEmpty()) {
            line = label->text().remove('&') + ": " + value;
        }
        if (!line.isEmpty()) {
            details += line + '\n';
        }
    }
    return details;
}

void LWindow::Show() {
    if (isHidden()) {
        FitOnScreen();
        KeepRoomForContents();
        adjustSize();
        if (mScrollArea != nullptr) {
            resize(RoomOnScreen(*this));
        }
    }
    show();
    raise();
    activateWindow();
    if (focusWidget() == nullptr) {
        focusNextChild();
    }
    BecomeTarget();
}

void LWindow::UpdatePort() {
    if (!isVisible()) {
        return;  // nothing of it is on screen, and Show lays it out
    }
    // Panes that were just shown or hidden are laid out first; otherwise they would be drawn at their old
    // place.
    if (QWidget* contents = Contents(); contents != nullptr && contents->layout() != nullptr) {
        contents->layout()->activate();
    }
    layout()->activate();
    if (mScrollArea != nullptr) {
        // What changes is at the bottom.
        mScrollArea->verticalScrollBar()->setValue(mScrollArea->verticalScrollBar()->maximum());
    }
    UDisplay::UseInPassing([this] { repaint(); });
}

void LWindow::CallForAttention() {
    UDisplay::Use([this] { QApplication::alert(this); });
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
        BecomeTarget();
    }
    return handled;
}

bool LWindow::eventFilter(QObject* /*watched*/, QEvent* event) {
    // Contents that scroll report changes to the scroll area, not to the window.
    if (event->type() == QEvent::LayoutRequest) {
        KeepRoomForContents();
    }
    return false;
}

QWidget* LWindow::Contents() const {
    return mScrollArea != nullptr ? mScrollArea->widget() : centralWidget();
}

void LWindow::FitOnScreen() {
    QWidget* contents = Contents();
    if (contents == nullptr || contents->layout() == nullptr || mScrollArea != nullptr) {
        return;
    }
    const QSize room = RoomOnScreen(*this) - QSize(0, menuBar()->sizeHint().height());
    if (contents->layout()->totalSizeHint().width() > room.width()) {
        for (QLabel* label : contents->findChildren<QLabel*>()) {
            // A text that can be selected is a value and must not wrap; none is longer than this.
            constexpr int kLongestValue = 11;
            label->setProperty("leastCharacters",
                               std::min(label->property("leastCharacters").toInt(), kLongestValue));
            label->setWordWrap(!label->textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
        }
    }
    KeepRoomForContents();
    if (contents->minimumHeight() > room.height() || contents->minimumWidth() > room.width()) {
        ScrollContents();
    }
}

void LWindow::ScrollContents() {
    mScrollArea = MakeScroll(*centralWidget());
    if (mScrollArea == nullptr) {
        return;
    }
    if (auto* column = qobject_cast<QBoxLayout*>(centralWidget()->layout())) {
        constexpr int kGap = 12;
        const int below = column->indexOf(mScrollArea) + 1;
        column->insertWidget(below, new LSeparator);  // marks where the texts above are cut off
        column->insertSpacing(below + 1, kGap);
    }
    centralWidget()->setMinimumSize(0, 0);
    mScrollArea->widget()->installEventFilter(this);
    KeepRoomForContents();
    // A scroll area follows the Tab key by itself, but not a mnemonic.
    connect(qApp, &QApplication::focusChanged, mScrollArea, [this](QWidget* /*old*/, QWidget* now) {
        if (now != nullptr && mScrollArea->widget()->isAncestorOf(now)) {
            mScrollArea->ensureWidgetVisible(now);
        }
    });
}

void LWindow::KeepRoomForContents() {
    // A main window does not ask its contents for their height at a given width, so wrapped texts would be
    // cut off at the bottom. So the contents get their full height as their minimum.
    QWidget* contents = Contents();
    if (contents == nullptr || contents->layout() == nullptr) {
        return;
    }
    QLayout& layout = *contents->layout();
    QSize needed = layout.totalSizeHint();
    int width = RoomOnScreen(*this).width();
    if (mScrollArea != nullptr) {
        width -= mScrollArea->verticalScrollBar()->sizeHint().width();
    }
    if (needed.width() > width) {
        needed.setWidth(std::max(width, layout.totalMinimumSize().width()));
        needed.setHeight(layout.totalHeightForWidth(needed.width()));
    }
    contents->setMinimumSize(needed);
}
