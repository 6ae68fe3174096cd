#pragma once

class QDialog;
class QWidget;

// The window that a dialog asked for now belongs to: the dialog that is up already, or the application's
// front window, or null.
QWidget* ModalParent();

// Shows a dialog, waits until it is answered and returns its result code. After an accepted quit it is not
// shown, and counts as rejected.
int RunModal(QDialog& dialog);

// Takes the icons off a dialog's buttons, which some desktops put there, so that they look like all the
// others.
void RemoveButtonIcons(QDialog& dialog);

// Dismisses every dialog that is up, as if it had been cancelled.
void DismissDialogs();
