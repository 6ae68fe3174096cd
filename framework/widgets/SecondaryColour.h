#pragma once

class QWidget;

// Gives a widget the text colour of its surroundings at a strength between 0 and 1. A widget calls it when it
// is made and when its palette or parent changes, so that it follows light and dark themes.
void TakeSecondaryColour(QWidget& widget, float strength);

// Gives a control that is disabled the same colour as its text, where styles would make it fade away. Called
// at the same times.
void KeepLegibleWhenDisabled(QWidget& widget, float strength);
