#pragma once

// The common root of commanders and panes. It is a virtual base, so that a window, which is both, has it
// once. The class registry returns every object as one of these.
class LAttachable {
  public:
    LAttachable() = default;
    LAttachable(const LAttachable&) = delete;
    LAttachable& operator=(const LAttachable&) = delete;
    virtual ~LAttachable() = default;
};
