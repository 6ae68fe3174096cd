#pragma once

// Describes every LPushButton to assistive technology from now on. Pressing a button then clicks it as soon
// as the request has been answered, where Qt's own description would click a tenth of a second later. A
// button that cannot be used, at the request or at the click, is left alone. Further calls change nothing.
void DescribeButtonsToAssistiveTechnology();
