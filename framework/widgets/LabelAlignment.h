#pragma once

class QLabel;

// Has a short text start where the layout starts: beside its caption in a mirrored window too. Qt would go by
// the script that the text is written in, which is right for sentences only, and these are wrapped.
void AlignWithLayout(QLabel& label);
