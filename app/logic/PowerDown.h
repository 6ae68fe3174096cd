#pragma once

// Asking the system to shut the computer down.

// Sends the shutdown event to every process named "loginwindow". Failures are not reported.
void PowerDown();
