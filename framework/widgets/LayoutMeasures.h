#pragma once

// The measures of a layout in a layout file: its margins and spacings, and how its rows and columns share the
// room. All are in pixels, except the stretch factors.

#include <QByteArray>

class LayoutReader;
class QLayout;

// Sets one side's margin, or the spacing between a grid's rows or columns, from the property that Qt Designer
// writes for it. Returns false if the layout has no such measure.
[[nodiscard]] bool SetMeasure(QLayout& layout, const QByteArray& property, int pixels);

// Gives a grid's rows and columns the stretch factors and least sizes in the attributes of the reader's
// current element. Other layouts are left alone.
void ShareRoom(QLayout& layout, const LayoutReader& reader);
