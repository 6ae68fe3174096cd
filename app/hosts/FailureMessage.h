#pragma once

// The message that the program could not start or end properly.

// If standard error is not a terminal, shows the text in a message box and waits until it is answered: nobody
// reads the standard error of a program that was started from the desktop's menu. Does nothing without a
// display that somebody can see. Call it when nothing is under way any more and there is no LApplication.
void ShowFailure(const char* what);
