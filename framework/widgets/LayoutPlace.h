#pragma once

// Where in a grid or box something goes. In a box it is the end, whatever the cell.

class QLayout;
class QLayoutItem;
class QWidget;

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
