#pragma once

class QWidget;

// Gives a widget the text colour of its surroundings at a strength between 0 and 1. A widget calls it when it
// is made and when its palette or parent changes, so that it follows light and dark themes.
void TakeSecondaryColour(QWidget& widget, float strength);
