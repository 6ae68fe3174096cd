#pragma once

// From here on, has every LPushButton described to assistive technology such that pressing it clicks it as
// soon as the request has been answered, or never: a button that cannot be used, when it is asked for or by
// then, is left alone. Qt's own description clicks a tenth of a second later. Further calls change nothing.
void DescribeButtonsToAssistiveTechnology();
