#pragma once

// How texts look: the colour of those that are secondary to the main texts, and where short ones start. The
// colour follows the palette, and so light and dark themes.

class QLabel;
class QWidget;

// Gives a widget the text colour of its surroundings at a strength between 0 and 1, now and whenever its
// palette or parent changes.
void TakeSecondaryColour(QWidget& widget, float strength);

// Gives the text of a control the same colour while it is disabled, where styles would make it fade away.
void KeepLegibleWhenDisabled(QWidget& widget, float strength);

// Makes a short text start where the layout starts: beside its caption in a mirrored window, too. Qt would go
// by the script of the text, which is right only for sentences, and these are wrapped.
void AlignWithLayout(QLabel& label);
