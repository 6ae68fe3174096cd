#pragma once

class QLayout;
class QLayoutItem;
class QWidget;

// Where in a grid or box something goes. In a box it is the end, whatever the cell.
struct LayoutPlace {
    QLayout& layout;
    int row = 0;
    int column = 0;
    int rows = 1;
    int columns = 1;

    // The layout owns what is put into it, but a widget, whose owner is the one that the layout is on.
    void Put(QWidget* widget) const;
    void Put(QLayout* inner) const;
    void Put(QLayoutItem* item) const;
};
