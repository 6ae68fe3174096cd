#pragma once

// Showing modal dialogs one above the other, and waiting for their answers.

class QDialog;
class QWidget;

// The window that a new dialog belongs to: the dialog that is up already, or the application's front window,
// or null.
QWidget* ModalParent();

// Shows a dialog, waits until it is answered and returns its result code. If its window is not the active
// one, the desktop points the user to it. After an accepted quit it is not shown, and counts as rejected.
int RunModal(QDialog& dialog);

// Whether a dialog that RunModal or Qt shows is in front of a widget's window. An answered dialog stays in
// front until its answer has reached the caller: what is handled in between was meant for the dialog.
bool IsBehindDialog(const QWidget& widget);

// Dismisses every dialog that is up, as if it had been cancelled.
void DismissDialogs();
