#pragma once

// What tells a person that the program could not start or end as it should.

// Shows the text in a message box and waits until it is answered, if standard error is no terminal: what the
// desktop's menu started has no other reader. Does nothing without a display that somebody can see. Call it
// when nothing is under way any more and there is no LApplication.
void ShowFailure(const char* what);
