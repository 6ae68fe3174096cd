#pragma once

// The colour of what stands back behind the main texts. It follows the palette, and so light and dark themes.

class QWidget;

// Gives a widget the text colour of its surroundings at a strength between 0 and 1, now and whenever its
// palette or parent changes.
void TakeSecondaryColour(QWidget& widget, float strength);

// Gives the text of a control the same colour while it is disabled, where styles would make it fade away.
void KeepLegibleWhenDisabled(QWidget& widget, float strength);
