#pragma once

namespace UControlRegistry {

// Registers the additional classes that layouts use: LSeparator and LIconPane.
void RegisterAMClasses();

}  // namespace UControlRegistry
