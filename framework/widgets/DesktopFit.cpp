#include "framework/widgets/DesktopFit.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <algorithm>
#include <vector>

QSize RoomOnScreen(const QWidget& widget) {
    // A window's frame is not known until the window is shown; this is more than any usual one.
    constexpr QSize kFrame(12, 44);
    return widget.screen()->availableSize() - kFrame;
}

int ComfortableTextWidth(const QLabel& label) {
    constexpr int kCharacters = 60;
    const QFontMetrics metrics = label.fontMetrics();
    return std::min({metrics.size(0, label.text()).width(), kCharacters * metrics.averageCharWidth(),
                     RoomOnScreen(label).width() * 3 / 4});
}

void TakeDesktopsButtonOrder(QWidget& window) {
    const int order = window.style()->styleHint(QStyle::SH_DialogButtonLayout, nullptr, &window);
    if (order != QDialogButtonBox::WinLayout && order != QDialogButtonBox::KdeLayout) {
        return;  // the action comes last there too
    }
    for (QHBoxLayout* row : window.findChildren<QHBoxLayout*>()) {
        if (qobject_cast<QDialogButtonBox*>(row->parentWidget()) != nullptr) {
            continue;  // has ordered its buttons itself
        }
        std::vector<QPushButton*> buttons;
        for (int i = row->count() - 1; i >= 0; --i) {
            if (auto* button = qobject_cast<QPushButton*>(row->itemAt(i)->widget())) {
                buttons.push_back(button);
                row->removeWidget(button);
            }
        }
        for (QPushButton* button : buttons) {
            row->addWidget(button);
        }
    }
}

void RemoveButtonIcons(QDialog& dialog) {
    for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
        button->setIcon(QIcon());
    }
}
