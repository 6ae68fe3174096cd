#pragma once

// The pane classes that only layouts name.

namespace UControlRegistry {

// Registers LSeparator, and LIconPane: the desktop's own icon for an alert, which the layout's property
// "icon" chooses ("stop", "note" or "caution").
void RegisterAMClasses();

}  // namespace UControlRegistry
