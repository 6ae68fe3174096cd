#pragma once

// Drops the repetitions of a held Return, Enter, Escape or Space in the whole program, except spaces typed
// into a text. A key held on a button is one answer; its repetitions would answer the question that the
// button brought up.

#include <QObject>
#include <cstdint>

class HeldKeyFilter : public QObject {
  public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    // The key released last, and when; a time of 0 means unknown.
    int mReleasedKey = 0;
    uint64_t mReleasedAt = 0;
};
