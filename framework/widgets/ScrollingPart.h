#pragma once

// The part of a window or dialog that scrolls where the screen is too small for the whole: the widget that
// its layout names "scrolled". The rest, above all the buttons, stays in view.

#include <QDialog>
#include <QScrollArea>

// Puts the part of the contents into a scroll area in its place. Null if they have no such part.
QScrollArea* MakeScroll(QWidget& contents);

// Makes a dialog that is not shown yet no larger than the screen.
void FitOnScreen(QDialog& dialog);
