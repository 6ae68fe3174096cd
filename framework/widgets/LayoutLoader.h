#pragma once

#include <QUiLoader>

// Qt's loader of .ui files, which here asks the class registry first for every class that a layout names;
// what is not there is Qt's own.
class LayoutLoader : public QUiLoader {
  public:
    LayoutLoader();

    QWidget* createWidget(const QString& className, QWidget* parent, const QString& name) override;
};
