#pragma once

// What the program's entry code asks about its environment, and how it prepares it. On this system there is
// little to ask and nothing to prepare.

#include <cstdint>

namespace UEnvironment {

// The desktop draws controls in an appearance (theme) of its own.
constexpr uint32_t kHasAppearance = 0x1000;

// Qt always brings an appearance; no other feature is known.
inline bool HasFeature(uint32_t feature) {
    return feature == kHasAppearance;
}

}  // namespace UEnvironment

// Asks for blocks of master pointers. The C++ heap has no master pointers and grows by itself, so there is
// nothing to prepare.
inline void InitializeHeap(int /*masterPointerBlocks*/) {}

// Registers the program for themed controls. Qt themes every control without being asked, so this has nothing
// left to do.
inline void RegisterAppearanceClient() {}
