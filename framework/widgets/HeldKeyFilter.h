#pragma once

#include <QObject>

// Takes the repetitions of a held Return or Enter away from the whole program. Whoever holds the key on a
// button gives one answer; the repetitions would go on to answer the question that the button brought up.
class HeldKeyFilter : public QObject {
  public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override;
};
