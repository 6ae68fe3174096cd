#pragma once

// The simulated machine's dialog that asks for the administrator's right.

// Shows dialog-200.ui and waits for the answer; true if the right was granted. An accepted quit and an
// unusable layout refuse it.
bool AskAdministrator();
