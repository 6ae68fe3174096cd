#pragma once

#include <QComboBox>

#include "framework/core/PascalString.h"
#include "framework/widgets/LControl.h"

// A popup menu that shows its chosen item. Its value is the number of that item, counted from 1; 0 while it
// is empty. It broadcasts whenever the user picks an item, also the one that was chosen already.
//
// The first item that is appended becomes the chosen one, and the popup then posts one broadcast to the event
// loop: it arrives when the code that fills the menu has long returned.
class LPopupButton : public QComboBox, public LControl {
  public:
    static constexpr const char* kClassName = "LPopupButton";

    LPopupButton();

    int32_t GetValue() const override { return currentIndex() + 1; }
    // Numbers without an item are ignored.
    void SetValue(int32_t value) override;

    // Appends one item. No character has a meaning in a menu here, so the text is shown as it stands whether
    // or not the caller asks to have metacharacters ignored. Text that is too long for the popup loses its
    // middle, since equal cards differ in their slots, at the end; the tool tip then tells it in full.
    void AppendMenu(ConstStringPtr itemText, bool ignoreMetacharacters);

    // Shows the list if the popup is usable.
    void showPopup() override;

  protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void initStyleOption(QStyleOptionComboBox* option) const override;
    void keyPressEvent(QKeyEvent* event) override;
    void customEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
};
