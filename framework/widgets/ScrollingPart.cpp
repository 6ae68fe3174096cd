#include "framework/widgets/ScrollingPart.h"

#include <QLabel>
#include <QLayout>
#include <QStyle>

#include "framework/widgets/DesktopFit.h"

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
            // The scrolling part's height is reckoned from its own width, which is the texts' width from now.
            for (QLabel* label : area->findChildren<QLabel*>()) {
                label->setMaximumWidth(QWIDGETSIZE_MAX);
            }
            size.rwidth() += dialog.style()->pixelMetric(QStyle::PM_ScrollBarExtent);
        }
        dialog.resize(size.boundedTo(room));
    }
}
