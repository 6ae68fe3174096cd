#pragma once

// The system's one kind of ready-made alert: an icon, a title, an explanation and up to three buttons.

#include <cstdint>

#include "framework/core/PascalString.h"

using AlertType = int16_t;
constexpr AlertType kAlertStopAlert = 0;
constexpr AlertType kAlertNoteAlert = 1;
constexpr AlertType kAlertCautionAlert = 2;

// The buttons, by the numbers that a hit reports; a third button is 3.
constexpr int16_t kAlertStdAlertOKButton = 1;
constexpr int16_t kAlertStdAlertCancelButton = 2;

// Given as a button's text: the system's own text, in the user's language.
inline constexpr unsigned char kAlertDefaultOKText[] = {2, 'O', 'K'};
inline constexpr unsigned char kAlertDefaultCancelText[] = {6, 'C', 'a', 'n', 'c', 'e', 'l'};

// Where an alert appears. Alerts here are always centred on the window they belong to.
constexpr uint16_t kWindowAlertPositionParentWindowScreen = 0x700A;

struct AlertStdAlertParamRec {
    bool movable = false;        // has no meaning here: the window manager moves every window
    bool helpButton = false;     // has no meaning here: alerts have no help
    void* filterProc = nullptr;  // has no meaning here: Qt filters events
    ConstStringPtr defaultText = kAlertDefaultOKText;  // text of button 1; null leaves the button out
    ConstStringPtr cancelText = nullptr;               // of button 2
    ConstStringPtr otherText = nullptr;                // of button 3
    int16_t defaultButton = kAlertStdAlertOKButton;    // answers Return; 0 for none
    int16_t cancelButton = 0;                          // answers Escape, and an accepted quit; 0 for none
    uint16_t position = kWindowAlertPositionParentWindowScreen;
};

// Shows the alert, waits for the answer and stores the number of the button. Texts are shown character for
// character. After an accepted quit the alert is not shown and the answer is the record's cancelButton. So is
// the answer if the display is gone or goes meanwhile; the texts then go to standard error. Always returns 0.
int16_t StandardAlert(AlertType type, ConstStringPtr title, ConstStringPtr explanation,
                      const AlertStdAlertParamRec* parameters, int16_t* outItemHit);
