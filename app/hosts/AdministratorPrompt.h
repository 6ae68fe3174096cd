#pragma once

// The simulated machine's dialog that asks for the administrator's right.

// Shows dialog-200.ui and waits for the answer; true if the right was granted. After an accepted quit, or
// without a usable layout, it is refused.
[[nodiscard]] bool AskAdministrator();
