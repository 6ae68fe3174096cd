#include "framework/widgets/LayoutParts.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollArea>
#include <memory>

#include "framework/core/URegistrar.h"

namespace {

template <typename Widget>
QWidget* Create(QWidget* parent) {
    return new Widget(parent);
}

// Qt's own classes that layouts use.
constexpr struct {
    QStringView name;
    QWidget* (*create)(QWidget* parent);
} kQtClasses[] = {{u"QWidget", Create<QWidget>},         {u"QDialogButtonBox", Create<QDialogButtonBox>},
                  {u"QPushButton", Create<QPushButton>}, {u"QScrollArea", Create<QScrollArea>},
                  {u"QMenuBar", Create<QMenuBar>},       {u"QMenu", Create<QMenu>}};

}  // namespace

QWidget* CreateLayoutWidget(const QString& className, QWidget* parent) {
    std::unique_ptr<LAttachable> object = URegistrar::CreateObject(className.toStdString());
    if (auto* const widget = dynamic_cast<QWidget*>(object.get())) {
        static_cast<void>(object.release());
        if (parent != nullptr) {
            widget->setParent(parent);
        }
        return widget;
    }
    for (const auto& known : kQtClasses) {
        if (known.name == className) {
            return known.create(parent);
        }
    }
    return nullptr;
}

QLayout* CreateLayout(const QString& className) {
    if (className == QLatin1String("QVBoxLayout")) {
        return new QVBoxLayout;
    }
    if (className == QLatin1String("QHBoxLayout")) {
        return new QHBoxLayout;
    }
    return className == QLatin1String("QGridLayout") ? new QGridLayout : nullptr;
}

void PutInto(QWidget& parent, QWidget* child) {
    if (auto* window = qobject_cast<QMainWindow*>(&parent)) {
        window->setCentralWidget(child);
    } else if (auto* scrolling = qobject_cast<QScrollArea*>(&parent);
               scrolling != nullptr && scrolling->widget() == nullptr) {
        scrolling->setWidget(child);
    }
}

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
