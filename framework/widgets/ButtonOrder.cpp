#include "framework/widgets/ButtonOrder.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStyle>
#include <vector>

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
