#pragma once

#include <QObject>
#include <cstdint>

// Takes the repetitions of a held Return, Enter, Escape or Space away from the whole program, save spaces in
// a text. Whoever holds the key on a button gives one answer; the repetitions would go on to answer the
// question that the button brought up.
class HeldKeyFilter : public QObject {
  public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    // Of the last key that went up; a time stamp of 0 says nothing.
    int mReleasedKey = 0;
    uint64_t mReleasedAt = 0;
};
