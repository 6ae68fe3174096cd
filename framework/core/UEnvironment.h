#pragma once

// What the program's entry code asks about its environment, and how it prepares it. On this system there is
// little to ask and nothing to prepare.

#include <cstdint>

namespace UEnvironment {

// The desktop draws controls in its own appearance (theme).
constexpr uint32_t kHasAppearance = 0x1000;

// Qt always has an appearance; no other feature is known.
inline bool HasFeature(uint32_t feature) {
    return feature == kHasAppearance;
}

}  // namespace UEnvironment

// Asks for blocks of master pointers. The C++ heap has no master pointers and grows by itself, so there is
// nothing to prepare.
inline void InitializeHeap(int /*masterPointerBlocks*/) {}

// Registers the program for themed controls. Qt themes every control anyway, so this does nothing.
inline void RegisterAppearanceClient() {}
