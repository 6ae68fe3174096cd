#pragma once

// The common root of commanders and panes. It is a virtual base, so that an object that is both (a window) is
// one object to whoever holds it; the class registry makes and hands out everything as one of these.
class LAttachable {
  public:
    LAttachable() = default;
    LAttachable(const LAttachable&) = delete;
    LAttachable& operator=(const LAttachable&) = delete;
    virtual ~LAttachable() = default;
};
