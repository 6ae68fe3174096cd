#include "framework/widgets/DesktopFit.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <algorithm>
#include <vector>

QSize RoomOnScreen(const QWidget& widget) {
    // A window's frame is not known until the window is shown; this is larger than any usual one.
    constexpr QSize kFrame(12, 44);
    return widget.screen()->availableSize() - kFrame;
}

int ComfortableTextWidth(const QLabel& label) {
    constexpr int kCharacters = 60;
    const QFontMetrics metrics = label.fontMetrics();
    return std::min({metrics.size(0, label.text()).width(), kCharacters * metrics.averageCharWidth(),
                     RoomOnScreen(label).width() * 3 / 4});
}

QScrollArea* MakeScroll(QWidget& contents) {
    auto* scrolled = contents.findChild<QWidget*>("scrolled", Qt::FindDirectChildrenOnly);
    if (scrolled == nullptr) {
        return nullptr;
    }
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    delete contents.layout()->replaceWidget(scrolled, area);
    area->setWidget(scrolled);
    return area;
}

void FitOnScreen(QDialog& dialog) {
    const QSize room = RoomOnScreen(dialog);
    QSize size = dialog.testAttribute(Qt::WA_Resized) ? dialog.size() : dialog.sizeHint();
    if (size.height() > room.height() || size.width() > room.width()) {
        dialog.layout()->setSizeConstraint(QLayout::SetDefaultConstraint);
        if (const QScrollArea* area = MakeScroll(dialog)) {
            // The height of the scrolling part follows from its width, which is now that of the texts.
            for (QLabel* label : area->findChildren<QLabel*>()) {
                label->setMaximumWidth(QWIDGETSIZE_MAX);
            }
            size.rwidth() += dialog.style()->pixelMetric(QStyle::PM_ScrollBarExtent);
        }
        dialog.resize(size.boundedTo(room));
    }
}

void TakeDesktopsButtonOrder(QWidget& window) {
    const int order = window.style()->styleHint(QStyle::SH_DialogButtonLayout, nullptr, &window);
    if (order != QDialogButtonBox::WinLayout && order != QDialogButtonBox::KdeLayout) {
        return;  // the action comes last there too
    }
    for (QHBoxLayout* row : window.findChildren<QHBoxLayout*>()) {
        if (qobject_cast<QDialogButtonBox*>(row->parentWidget()) != nullptr) {
            continue;  // orders its buttons itself
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
