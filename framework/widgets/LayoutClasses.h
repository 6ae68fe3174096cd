#pragma once

// The widgets and layouts that a layout file may name, by their class names.

#include <QString>

class QLayout;
class QWidget;

// The widget of that class, made by the class registry if it knows the class. The parent, or the caller if
// there is none, owns it. Null if the class is not known.
QWidget* CreateLayoutWidget(const QString& className, QWidget* parent);

// A layout that belongs to no widget yet; null if the class is not known. The caller owns it.
QLayout* CreateLayout(const QString& className);

// Gives a widget a child that is in no layout. Some have a place of their own for one.
void PutInto(QWidget& parent, QWidget* child);
