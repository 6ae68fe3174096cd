#include "framework/widgets/LayoutLoader.h"

#include <QCoreApplication>
#include <QStringList>
#include <QWidget>

#include "framework/core/URegistrar.h"

// Layouts use the registered classes and Qt's own. QUiLoader's constructor would load every plug-in for Qt
// Designer that happens to be installed, with all that stands behind it, before it can be told not to; so it
// looks for them while there is nowhere to look.
class LayoutLoader::WithoutPlugins {
  public:
    WithoutPlugins() { QCoreApplication::setLibraryPaths({}); }
    WithoutPlugins(const WithoutPlugins&) = delete;
    WithoutPlugins& operator=(const WithoutPlugins&) = delete;
    ~WithoutPlugins() { QCoreApplication::setLibraryPaths(mPaths); }

  private:
    const QStringList mPaths = QCoreApplication::libraryPaths();
};

LayoutLoader::LayoutLoader() : LayoutLoader(WithoutPlugins()) {}

LayoutLoader::LayoutLoader(const WithoutPlugins& /*duringConstruction*/) {
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
