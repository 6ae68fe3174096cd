#include "framework/widgets/LayoutLoader.h"

#include <QWidget>

#include "framework/core/URegistrar.h"

LayoutLoader::LayoutLoader() {
    setLanguageChangeEnabled(false);
}

QWidget* LayoutLoader::createWidget(const QString& className, QWidget* parent, const QString& name) {
    std::unique_ptr<LAttachable> object = URegistrar::CreateObject(className.toStdString());
    auto* widget = dynamic_cast<QWidget*>(object.get());
    if (widget == nullptr) {
        return QUiLoader::createWidget(className, parent, name);
    }
    static_cast<void>(object.release());
    if (parent != nullptr) {
        widget->setParent(parent);
    }
    widget->setObjectName(name);
    return widget;
}
