#pragma once

#include <QString>

class QLayout;
class QWidget;

// The widget of that class, made by the class registry if it knows the class. The parent, or the caller if
// there is none, owns it. Null when nobody knows the class.
QWidget* CreateLayoutWidget(const QString& className, QWidget* parent);

// A layout that belongs to no widget yet; null when nobody knows the class. The caller owns it.
QLayout* CreateLayout(const QString& className);
