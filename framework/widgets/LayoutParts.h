#pragma once

// The widgets and layouts that a layout file may name, and putting one into another.

#include <QString>

class QLayout;
class QLayoutItem;
class QWidget;

// Creates a widget of a class, with the class registry if that knows the class. The parent owns it, or the
// caller if there is none. Null if the class is not known.
QWidget* CreateLayoutWidget(const QString& className, QWidget* parent);

// Creates a layout, which the caller owns. Null if the class is not known.
QLayout* CreateLayout(const QString& className);

// Puts a child that is in no layout where some widgets have a place for one: the centre of a main window, the
// contents of a scroll area.
void PutInto(QWidget& parent, QWidget* child);

// A place in a grid or box. In a box it is the end, whatever the cell.
struct LayoutPlace {
    QLayout& layout;
    int row = 0;
    int column = 0;
    int rows = 1;
    int columns = 1;

    // The layout owns what is put into it, except a widget: that belongs to the widget that has the layout.
    void Put(QWidget* widget) const;
    void Put(QLayout* inner) const;
    void Put(QLayoutItem* item) const;
};
