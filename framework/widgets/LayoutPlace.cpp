#include "framework/widgets/LayoutPlace.h"

#include <QGridLayout>

void LayoutPlace::Put(QWidget* widget) const {
    if (auto* grid = qobject_cast<QGridLayout*>(&layout)) {
        grid->addWidget(widget, row, column, rows, columns);
    } else {
        layout.addWidget(widget);
    }
}

void LayoutPlace::Put(QLayout* inner) const {
    if (auto* grid = qobject_cast<QGridLayout*>(&layout)) {
        grid->addLayout(inner, row, column, rows, columns);
    } else if (auto* box = qobject_cast<QBoxLayout*>(&layout)) {
        box->addLayout(inner);
    }
}

void LayoutPlace::Put(QLayoutItem* item) const {
    if (auto* grid = qobject_cast<QGridLayout*>(&layout)) {
        grid->addItem(item, row, column, rows, columns);
    } else {
        layout.addItem(item);
    }
}
