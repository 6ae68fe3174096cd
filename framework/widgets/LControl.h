#pragma once

// A pane with a value. When the user acts on it, it broadcasts its value message, with the value (int32_t*)
// as the parameter. The layout gives the message as the property "valueMessage", four characters in a string;
// without one the control is silent. So is a control that is not usable, whatever reaches its widget: an
// event from before the window changed, a key, assistive technology.

#include "framework/core/LBroadcaster.h"
#include "framework/widgets/LPane.h"

class LControl : public LPane, public LBroadcaster {
  public:
    // Setting the value does not broadcast; only the user's actions do.
    virtual int32_t GetValue() const = 0;
    virtual void SetValue(int32_t value) = 0;

    void BroadcastValueMessage();

    void FinishCreate() override;

  protected:
    explicit LControl(QWidget* self) : LPane(self) {}

    // For connecting to Qt's signals: broadcasts if the control is usable, and keeps what a listener throws
    // for the event loop.
    void BroadcastFromQt() noexcept;

  private:
    MessageT mValueMessage = 0;
};
